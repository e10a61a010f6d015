#include "CadReader.h"

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GeomAdaptor_Curve.hxx>
#include <GeomAdaptor_Surface.hxx>
#include <GeomLProp_SLProps.hxx>
#include <IGESCAFControl_Reader.hxx>
#include <Interface_Check.hxx>
#include <Interface_CheckIterator.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_PrinterOStream.hxx>
#include <Message_ProgressIndicator.hxx>
#include <Message_ProgressScope.hxx>
#include <NCollection_DataMap.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <Quantity_ColorRGBA.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <Standard_Failure.hxx>
#include <TColStd_HSequenceOfExtendedString.hxx>
#include <TDF_LabelMapHasher.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Vertex.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_Reader.hxx>
#include <XSControl_WorkSession.hxx>

#include <IGESControl_Controller.hxx>
#include <STEPCAFControl_Controller.hxx>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <unordered_set>
#include <utility>

#include "CadSample.h"
#include "Text.h"

#if defined(__SANITIZE_ADDRESS__)
#define VEKHOST_LSAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VEKHOST_LSAN 1
#endif
#endif
#ifdef VEKHOST_LSAN
#include <sanitizer/lsan_interface.h>
#endif

namespace vekhost {

namespace {
using FaceColors = NCollection_DataMap<TopoDS_Shape, Quantity_ColorRGBA, TopTools_ShapeMapHasher>;

const Quantity_ColorRGBA defaultColor(Quantity_Color(0.72, 0.74, 0.78, Quantity_TOC_RGB), 1.0f);

// Set up once per process: Open CASCADE's message printers write to stdout, which is the
// tool's; and its data-exchange controllers and document application fill global
// registries the first time they are made and never free them. Under LeakSanitizer those
// are made with leak tracking off, so that every other leak still fails the run.
void setUpOpenCascade() {
    static const bool done = [] {
#ifdef VEKHOST_LSAN
        const __lsan::ScopedDisabler registriesLiveForever;
#endif
        Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_PrinterOStream));
        STEPCAFControl_Controller::Init();
        IGESControl_Controller::Init();
        XCAFApp_Application::GetApplication();
        return true;
    }();
    static_cast<void>(done);
}

// The STEP and IGES readers accept damaged files and note what failed; transferring such
// data can crash Open CASCADE, and what does transfer is not the model.
void rejectFailures(XSControl_Reader& reader, const char* format) {
    const Interface_CheckIterator checks = reader.WS()->ModelCheckList();
    long failures = 0;
    for (checks.Start(); checks.More(); checks.Next())
        failures += checks.Value()->NbFails();
    if (failures > 0)
        throw LoadError(std::to_string(failures) + " error(s) in the " + format +
                        " data: the file is damaged");
}

class ProgressAdapter : public Message_ProgressIndicator {
public:
    explicit ProgressAdapter(Progress& bar) : bar(bar) {}

protected:
    void Show(const Message_ProgressScope&, const Standard_Boolean) override {
        bar.update(GetPosition());
    }

private:
    Progress& bar;
};

Matrix toMatrix(const gp_Trsf& trsf) {
    Matrix out;
    for (std::size_t col = 0; col < 4; ++col)
        for (std::size_t row = 0; row < 3; ++row)
            out.m[col * 4 + row] = trsf.Value(static_cast<int>(row) + 1, static_cast<int>(col) + 1);
    return out;
}

Vec3 toVec(const gp_XYZ& p) {
    return {p.X(), p.Y(), p.Z()};
}

std::wstring nameOf(const TDF_Label& label) {
    Handle(TDataStd_Name) name;
    if (!label.FindAttribute(TDataStd_Name::GetID(), name)) return {};
    return wideFromUtf16(name->Get().ToExtString());
}

// Surface normals at the mesh nodes where the surface defines one, averaged triangle
// normals elsewhere. Nodes live in the face's triangulation frame, the surface may carry a
// location of its own on top of it.
void computeNormals(const TopoDS_Face& face, const Handle(Poly_Triangulation) & triangulation) {
    triangulation->ComputeNormals();
    TopLoc_Location surfaceLocation;
    const Handle(Geom_Surface)& surface = BRep_Tool::Surface(face, surfaceLocation);
    if (surface.IsNull() || !triangulation->HasUVNodes()) return;
    TopLoc_Location meshLocation;
    BRep_Tool::Triangulation(face, meshLocation);
    const gp_Trsf relative = (meshLocation.Inverted() * surfaceLocation).Transformation();
    const bool moved = relative.Form() != gp_Identity;
    GeomLProp_SLProps props(surface, 1, 1e-9);
    for (int i = 1; i <= triangulation->NbNodes(); ++i) {
        const gp_Pnt2d uv = triangulation->UVNode(i);
        props.SetParameters(uv.X(), uv.Y());
        if (!props.IsNormalDefined()) continue;
        gp_Dir normal = props.Normal();
        if (moved) normal.Transform(relative);
        triangulation->SetNormal(i, normal);
    }
}

// Edge points from the 3D polygon of a free edge, or from the polygon on the triangulation
// of the first face that holds the edge.
void appendEdgePoints(const TopoDS_Edge& edge, const TopTools_ListOfShape* faces,
                      std::vector<veksg::Point3>& points) {
    auto add = [&](const gp_Pnt& p) {
        points.emplace_back(static_cast<float>(p.X()), static_cast<float>(p.Y()),
                            static_cast<float>(p.Z()));
    };
    if (faces) {
        for (const TopoDS_Shape& shape : *faces) {
            TopLoc_Location location;
            const Handle(Poly_Triangulation)& mesh =
                BRep_Tool::Triangulation(TopoDS::Face(shape), location);
            if (mesh.IsNull()) continue;
            const Handle(Poly_PolygonOnTriangulation)& polygon =
                BRep_Tool::PolygonOnTriangulation(edge, mesh, location);
            if (polygon.IsNull()) continue;
            const gp_Trsf trsf = location.Transformation();
            const TColStd_Array1OfInteger& nodes = polygon->Nodes();
            for (int i = nodes.Lower(); i <= nodes.Upper(); ++i)
                add(mesh->Node(nodes(i)).Transformed(trsf));
            return;
        }
    }
    TopLoc_Location location;
    const Handle(Poly_Polygon3D)& polygon = BRep_Tool::Polygon3D(edge, location);
    if (polygon.IsNull()) return;
    const gp_Trsf trsf = location.Transformation();
    const TColgp_Array1OfPnt& nodes = polygon->Nodes();
    for (int i = nodes.Lower(); i <= nodes.Upper(); ++i)
        add(nodes(i).Transformed(trsf));
}

template <typename Geometry>
int keyOf(std::unordered_map<const Geometry*, int>& keys, std::vector<int>& kinds,
          const Geometry* geometry, int kind) {
    const auto found = keys.emplace(geometry, static_cast<int>(kinds.size()));
    if (found.second) kinds.push_back(kind);
    return found.first->second;
}

struct PartBuilder {
    const FaceColors& faceColors;
    Quantity_ColorRGBA baseColor;
    bool perVertexColors = false;

    std::shared_ptr<PartGeometry> build(const TopoDS_Shape& shape) const;

private:
    void addEdges(const TopoDS_Shape& shape, PartGeometry& part,
                  const TopTools_IndexedMapOfShape& edges,
                  const TopTools_IndexedMapOfShape& vertices) const;
    void addFaceTriangles(const TopoDS_Face& face, PartGeometry::FaceData& data,
                          veksg::Mesh& mesh) const;
};

std::shared_ptr<PartGeometry> PartBuilder::build(const TopoDS_Shape& shape) const {
    auto part = std::make_shared<PartGeometry>();
    TopTools_IndexedMapOfShape faces;
    TopTools_IndexedMapOfShape edges;
    TopTools_IndexedMapOfShape vertices;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    TopExp::MapShapes(shape, TopAbs_VERTEX, vertices);

    part->vertices.reserve(static_cast<std::size_t>(vertices.Extent()));
    for (int i = 1; i <= vertices.Extent(); ++i)
        part->vertices.push_back(toVec(BRep_Tool::Pnt(TopoDS::Vertex(vertices(i))).XYZ()));
    addEdges(shape, *part, edges, vertices);

    part->mesh = std::make_shared<veksg::Mesh>();
    std::size_t corners = 0;
    for (int i = 1; i <= faces.Extent(); ++i) {
        TopLoc_Location location;
        const auto& triangulation = BRep_Tool::Triangulation(TopoDS::Face(faces(i)), location);
        if (!triangulation.IsNull())
            corners += 3 * static_cast<std::size_t>(triangulation->NbTriangles());
    }
    if (perVertexColors)
        part->mesh->vnc.reserve(corners);
    else
        part->mesh->vn.reserve(corners);
    std::unordered_map<const Geom_Surface*, int> surfaceKeys;
    part->faces.resize(static_cast<std::size_t>(faces.Extent()));
    for (int i = 1; i <= faces.Extent(); ++i) {
        const TopoDS_Face& face = TopoDS::Face(faces(i));
        auto& data = part->faces[static_cast<std::size_t>(i - 1)];
        TopLoc_Location location;
        const Handle(Geom_Surface)& surface = BRep_Tool::Surface(face, location);
        if (!surface.IsNull())
            data.surface = keyOf(surfaceKeys, part->surfaceKinds, surface.get(),
                                 static_cast<int>(GeomAdaptor_Surface(surface).GetType()));
        data.reversed = face.Orientation() == TopAbs_REVERSED;
        for (TopExp_Explorer ex(face, TopAbs_EDGE); ex.More(); ex.Next())
            data.edges.push_back(edges.FindIndex(ex.Current()) - 1);
        std::sort(data.edges.begin(), data.edges.end());
        data.edges.erase(std::unique(data.edges.begin(), data.edges.end()), data.edges.end());
        addFaceTriangles(face, data, *part->mesh);
        if (!data.box.valid)
            for (TopExp_Explorer ex(face, TopAbs_VERTEX); ex.More(); ex.Next())
                data.box.add(
                    part->vertices[static_cast<std::size_t>(vertices.FindIndex(ex.Current()) - 1)]);
    }
    return part;
}

void PartBuilder::addEdges(const TopoDS_Shape& shape, PartGeometry& part,
                           const TopTools_IndexedMapOfShape& edges,
                           const TopTools_IndexedMapOfShape& vertices) const {
    TopTools_IndexedDataMapOfShapeListOfShape edgeFaces;
    TopExp::MapShapesAndUniqueAncestors(shape, TopAbs_EDGE, TopAbs_FACE, edgeFaces);
    std::unordered_map<const Geom_Curve*, int> curveKeys;
    part.lines = std::make_shared<veksg::Polyline>();
    auto& points = part.lines->points;
    part.edges.resize(static_cast<std::size_t>(edges.Extent()));
    for (int i = 1; i <= edges.Extent(); ++i) {
        const TopoDS_Edge& edge = TopoDS::Edge(edges(i));
        auto& data = part.edges[static_cast<std::size_t>(i - 1)];
        if (!BRep_Tool::Degenerated(edge)) {
            TopLoc_Location location;
            double first = 0;
            double last = 0;
            const Handle(Geom_Curve)& curve = BRep_Tool::Curve(edge, location, first, last);
            if (!curve.IsNull()) {
                data.kind = static_cast<int>(GeomAdaptor_Curve(curve).GetType());
                data.curve = keyOf(curveKeys, part.curveKinds, curve.get(), data.kind);
            }
        }
        TopoDS_Vertex start;
        TopoDS_Vertex end;
        TopExp::Vertices(edge, start, end);
        if (!start.IsNull()) data.start = vertices.FindIndex(start) - 1;
        if (!end.IsNull()) data.end = vertices.FindIndex(end) - 1;
        data.points.first = static_cast<int>(points.size());
        if (!BRep_Tool::Degenerated(edge)) appendEdgePoints(edge, edgeFaces.Seek(edge), points);
        data.points.count = static_cast<int>(points.size()) - data.points.first;
    }
}

void PartBuilder::addFaceTriangles(const TopoDS_Face& face, PartGeometry::FaceData& data,
                                   veksg::Mesh& mesh) const {
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& triangulation = BRep_Tool::Triangulation(face, location);
    data.triangles.first = vertexCount(mesh);
    if (triangulation.IsNull()) return;

    const gp_Trsf trsf = location.Transformation();
    const double flip = data.reversed ? -1.0 : 1.0;
    const int nodeCount = triangulation->NbNodes();
    std::vector<std::array<float, 6>> nodes(static_cast<std::size_t>(nodeCount));
    for (int i = 1; i <= nodeCount; ++i) {
        const gp_Pnt p = triangulation->Node(i).Transformed(trsf);
        gp_Dir n(0, 0, 1);
        if (triangulation->HasNormals()) n = triangulation->Normal(i).Transformed(trsf);
        data.box.add(Vec3{p.X(), p.Y(), p.Z()});
        nodes[static_cast<std::size_t>(i - 1)] = {
            static_cast<float>(p.X()),        static_cast<float>(p.Y()),
            static_cast<float>(p.Z()),        static_cast<float>(flip * n.X()),
            static_cast<float>(flip * n.Y()), static_cast<float>(flip * n.Z())};
    }

    Quantity_ColorRGBA color = baseColor;
    faceColors.Find(face, color);
    const Quantity_Color& rgb = color.GetRGB();
    const float rgba[4] = {static_cast<float>(rgb.Red()), static_cast<float>(rgb.Green()),
                           static_cast<float>(rgb.Blue()), color.Alpha()};
    const int triangleCount = triangulation->NbTriangles();
    for (int t = 1; t <= triangleCount; ++t) {
        int corners[3];
        triangulation->Triangle(t).Get(corners[0], corners[1], corners[2]);
        // A reversed face turns its triangles over along with its normals.
        if (data.reversed) std::swap(corners[1], corners[2]);
        for (const int corner : corners) {
            const auto& node = nodes[static_cast<std::size_t>(corner - 1)];
            if (perVertexColors) {
                veksg::VNC v{};
                std::copy(node.begin(), node.begin() + 3, v.vertex);
                std::copy(node.begin() + 3, node.end(), v.normal);
                std::copy(rgba, rgba + 4, v.color);
                mesh.vnc.push_back(v);
            } else {
                veksg::VN v{};
                std::copy(node.begin(), node.begin() + 3, v.vertex);
                std::copy(node.begin() + 3, node.end(), v.normal);
                mesh.vn.push_back(v);
            }
        }
    }
    data.triangles.count = vertexCount(mesh) - data.triangles.first;
}

class CadReader : public Reader {
public:
    CadReader(std::string path, CadFormat format, const LoadOptions& options)
        : path(std::move(path)), kind(format), options(options) {
        setUpOpenCascade();
        XCAFApp_Application::GetApplication()->NewDocument("MDTV-XCAF", document);
    }
    ~CadReader() override {
        // Layers and their shapes refer to each other; unless they are parted first the
        // document's memory outlives it.
        if (!layers.IsNull()) {
            TDF_LabelSequence labels;
            layers->GetLayerLabels(labels);
            for (const TDF_Label& label : labels)
                layers->RemoveLayer(label);
        }
        XCAFApp_Application::GetApplication()->Close(document);
    }

    const char* format() const override {
        switch (kind) {
        case CadFormat::Step:
            return "STEP";
        case CadFormat::Iges:
            return "IGES";
        case CadFormat::Brep:
            return "BREP";
        case CadFormat::Sample:
            break;
        }
        return "sample";
    }

    void read(Progress& progress) override {
        guarded([&] { readShapes(progress); });
    }
    void tessellate(Progress& progress) override {
        guarded([&] { mesh(progress); });
    }
    void fill(DocumentBuilder& builder) override {
        guarded([&] {
            for (const TDF_Label& root : roots)
                walk(builder, root, -1, Matrix(), nullptr);
        });
    }
    double deflection() const override { return usedDeflection; }

private:
    // Open CASCADE's exceptions do not derive from std::exception.
    template <typename Phase>
    static void guarded(Phase phase) {
        try {
            phase();
        } catch (const Standard_Failure& failure) {
            throw LoadError(std::string("Open CASCADE failed: ") + failure.DynamicType()->Name() +
                            ": " + failure.GetMessageString());
        }
    }
    void readShapes(Progress& progress);
    void mesh(Progress& progress);
    template <typename DocumentReader>
    void transfer(DocumentReader& reader, XSControl_Reader& plain, const char* format,
                  const Message_ProgressRange& range);
    void readBrep(ProgressAdapter& indicator);
    TopoDS_Compound allRoots() const;
    void walk(DocumentBuilder& builder, const TDF_Label& label, int parent,
              const Matrix& parentWorld, const Quantity_ColorRGBA* inherited);
    bool colorOf(const TDF_Label& label, Quantity_ColorRGBA& color) const;
    void putOnLayers(DocumentBuilder& builder, int node, const TDF_Label& label) const;
    std::shared_ptr<const PartGeometry> partOf(const TDF_Label& definition);

    std::string path;
    CadFormat kind;
    LoadOptions options;
    Handle(TDocStd_Document) document;
    Handle(XCAFDoc_ShapeTool) shapes;
    Handle(XCAFDoc_ColorTool) colors;
    Handle(XCAFDoc_LayerTool) layers;
    TDF_LabelSequence roots;
    NCollection_DataMap<TDF_Label, std::shared_ptr<const PartGeometry>, TDF_LabelMapHasher> parts;
    double usedDeflection = 0;
};

void CadReader::readShapes(Progress& progress) {
    Handle(ProgressAdapter) indicator = new ProgressAdapter(progress);
    if (kind == CadFormat::Step) {
        STEPCAFControl_Reader reader;
        transfer(reader, reader.ChangeReader(), "STEP", indicator->Start());
    } else if (kind == CadFormat::Iges) {
        IGESCAFControl_Reader reader;
        transfer(reader, reader, "IGES", indicator->Start());
    } else if (kind == CadFormat::Brep) {
        readBrep(*indicator);
    } else {
        buildSample(document);
    }
    shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    colors = XCAFDoc_DocumentTool::ColorTool(document->Main());
    layers = XCAFDoc_DocumentTool::LayerTool(document->Main());
    shapes->GetFreeShapes(roots);
    if (roots.IsEmpty()) throw LoadError("the file holds no shape");
}

// The BREP reader writes its complaints about broken files straight to std::cout.
class MutedStdout {
public:
    MutedStdout() : saved(std::cout.rdbuf(nullptr)) {}
    ~MutedStdout() { std::cout.rdbuf(saved); }
    MutedStdout(const MutedStdout&) = delete;
    MutedStdout& operator=(const MutedStdout&) = delete;

private:
    std::streambuf* saved;
};

// `plain` is the reader underneath `reader` that keeps the parser's notes.
template <typename DocumentReader>
void CadReader::transfer(DocumentReader& reader, XSControl_Reader& plain, const char* format,
                         const Message_ProgressRange& range) {
    reader.SetColorMode(true);
    reader.SetNameMode(true);
    reader.SetLayerMode(true);
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone)
        throw LoadError(std::string("not a readable ") + format + " file");
    rejectFailures(plain, format);
    if (!reader.Transfer(document, range))
        throw LoadError(std::string("no shape could be transferred from the ") + format + " data");
}

void CadReader::readBrep(ProgressAdapter& indicator) {
    TopoDS_Shape shape;
    BRep_Builder builder;
    bool read = false;
    {
        const MutedStdout muted;
        read = BRepTools::Read(shape, path.c_str(), builder, indicator.Start());
    }
    if (!read || shape.IsNull()) throw LoadError("not a readable BREP file");
    const TDF_Label label =
        XCAFDoc_DocumentTool::ShapeTool(document->Main())->AddShape(shape, Standard_False);
    const std::string stem = std::filesystem::path(path).stem().string();
    TDataStd_Name::Set(label, TCollection_ExtendedString(stem.c_str(), Standard_True));
}

TopoDS_Compound CadReader::allRoots() const {
    TopoDS_Compound all;
    BRep_Builder builder;
    builder.MakeCompound(all);
    for (const TDF_Label& root : roots)
        builder.Add(all, XCAFDoc_ShapeTool::GetShape(root));
    return all;
}

void CadReader::mesh(Progress& progress) {
    const TopoDS_Compound all = allRoots();
    usedDeflection = options.deflection;
    if (usedDeflection <= 0) {
        Bnd_Box box;
        BRepBndLib::Add(all, box, Standard_False);
        // A thousandth of the model's diagonal: smooth on screen, cheap to read.
        const double diagonal = box.IsVoid() ? 0.0 : std::sqrt(box.SquareExtent());
        usedDeflection = diagonal > 0 ? diagonal * 1e-3 : 0.01;
    }
    IMeshTools_Parameters parameters;
    parameters.Deflection = usedDeflection;
    parameters.Angle = 0.5;
    parameters.InParallel = Standard_True;
    Handle(ProgressAdapter) indicator = new ProgressAdapter(progress);
    BRepMesh_IncrementalMesh mesher(all, parameters, indicator->Start());

    // Instances share their face's triangulation: one normal pass each.
    std::unordered_set<const Poly_Triangulation*> done;
    for (TopExp_Explorer ex(all, TopAbs_FACE); ex.More(); ex.Next()) {
        const TopoDS_Face& face = TopoDS::Face(ex.Current());
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& triangulation = BRep_Tool::Triangulation(face, location);
        if (!triangulation.IsNull() && done.insert(triangulation.get()).second)
            computeNormals(face, triangulation);
    }
}

bool CadReader::colorOf(const TDF_Label& label, Quantity_ColorRGBA& color) const {
    return colors->GetColor(label, XCAFDoc_ColorSurf, color) ||
           colors->GetColor(label, XCAFDoc_ColorGen, color);
}

void CadReader::putOnLayers(DocumentBuilder& builder, int node, const TDF_Label& label) const {
    Handle(TColStd_HSequenceOfExtendedString) names;
    if (!layers->GetLayers(label, names) || names.IsNull()) return;
    for (const TCollection_ExtendedString& name : *names)
        builder.putOnLayer(node, builder.layer(wideFromUtf16(name.ToExtString())));
}

void CadReader::walk(DocumentBuilder& builder, const TDF_Label& label, int parent,
                     const Matrix& parentWorld, const Quantity_ColorRGBA* inherited) {
    TDF_Label definition = label;
    Matrix world = parentWorld;
    const bool reference = XCAFDoc_ShapeTool::IsReference(label);
    if (reference) {
        XCAFDoc_ShapeTool::GetReferredShape(label, definition);
        world = parentWorld * toMatrix(XCAFDoc_ShapeTool::GetLocation(label).Transformation());
    }
    const std::wstring product = nameOf(definition);
    std::wstring name = nameOf(label);
    if (name.empty()) name = product;

    Quantity_ColorRGBA color;
    const Quantity_ColorRGBA* own = &color;
    if (!colorOf(label, color) && !colorOf(definition, color)) own = inherited;

    const int node = builder.addNode(name, parent, world);
    if (reference && !product.empty() && product != name)
        builder.addAttribute(node, L"product", product);
    putOnLayers(builder, node, label);
    if (reference) putOnLayers(builder, node, definition);

    if (XCAFDoc_ShapeTool::IsAssembly(definition)) {
        TDF_LabelSequence components;
        XCAFDoc_ShapeTool::GetComponents(definition, components);
        for (const TDF_Label& component : components)
            walk(builder, component, node, world, own);
        return;
    }
    const Quantity_ColorRGBA& shown = own ? *own : defaultColor;
    const Quantity_Color& rgb = shown.GetRGB();
    builder.addPart(node, partOf(definition),
                    materialFromColor(static_cast<float>(rgb.Red()),
                                      static_cast<float>(rgb.Green()),
                                      static_cast<float>(rgb.Blue()), shown.Alpha()));
}

std::shared_ptr<const PartGeometry> CadReader::partOf(const TDF_Label& definition) {
    if (const auto* known = parts.Seek(definition)) return *known;

    Quantity_ColorRGBA base = defaultColor;
    colorOf(definition, base);
    // Colours of sub-shapes: bodies first, so that a face's own colour wins.
    FaceColors faceColors;
    TDF_LabelSequence subShapes;
    XCAFDoc_ShapeTool::GetSubShapes(definition, subShapes);
    for (const bool facesOnly : {false, true})
        for (const TDF_Label& sub : subShapes) {
            Quantity_ColorRGBA color;
            const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(sub);
            if ((shape.ShapeType() == TopAbs_FACE) != facesOnly || !colorOf(sub, color)) continue;
            for (TopExp_Explorer ex(shape, TopAbs_FACE); ex.More(); ex.Next())
                faceColors.Bind(ex.Current(), color);
        }
    bool perVertexColors = false;
    for (FaceColors::Iterator it(faceColors); it.More() && !perVertexColors; it.Next())
        perVertexColors = !(it.Value() == base);

    const PartBuilder partBuilder{faceColors, base, perVertexColors};
    std::shared_ptr<const PartGeometry> part =
        partBuilder.build(XCAFDoc_ShapeTool::GetShape(definition));
    parts.Bind(definition, part);
    return part;
}
} // namespace

std::unique_ptr<Reader> makeCadReader(const std::string& path, CadFormat format,
                                      const LoadOptions& options) {
    return std::make_unique<CadReader>(path, format, options);
}

} // namespace vekhost
