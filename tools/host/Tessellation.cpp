#include "Tessellation.h"

#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GeomAdaptor_Curve.hxx>
#include <GeomAdaptor_Surface.hxx>
#include <GeomLProp_SLProps.hxx>
#include <Poly_Polygon3D.hxx>
#include <Poly_PolygonOnTriangulation.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_IndexedDataMapOfShapeListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Vertex.hxx>

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "OcctProgress.h"

namespace vekhost {

namespace {
Vec3 toVec(const gp_XYZ& p) {
    return {p.X(), p.Y(), p.Z()};
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

// A thousandth of the model's diagonal: smooth on screen, cheap to read.
double deflectionFor(const TopoDS_Shape& shape) {
    Bnd_Box box;
    BRepBndLib::Add(shape, box, Standard_False);
    const double diagonal = box.IsVoid() ? 0.0 : std::sqrt(box.SquareExtent());
    return diagonal > 0 ? diagonal * 1e-3 : 0.01;
}

// Instances share their face's triangulation: one normal pass each.
void addSurfaceNormals(const TopoDS_Shape& shape) {
    std::unordered_set<const Poly_Triangulation*> done;
    for (TopExp_Explorer ex(shape, TopAbs_FACE); ex.More(); ex.Next()) {
        const TopoDS_Face& face = TopoDS::Face(ex.Current());
        TopLoc_Location location;
        const Handle(Poly_Triangulation)& triangulation = BRep_Tool::Triangulation(face, location);
        if (!triangulation.IsNull() && done.insert(triangulation.get()).second)
            computeNormals(face, triangulation);
    }
}
} // namespace

double tessellate(const TopoDS_Shape& shape, double deflection, Progress& progress) {
    const double used = deflection > 0 ? deflection : deflectionFor(shape);
    IMeshTools_Parameters parameters;
    parameters.Deflection = used;
    parameters.Angle = 0.5;
    parameters.InParallel = Standard_True;
    Handle(OcctProgress) indicator = new OcctProgress(progress);
    BRepMesh_IncrementalMesh mesher(shape, parameters, indicator->Start());
    addSurfaceNormals(shape);
    return used;
}

ShapeIndex::ShapeIndex(const TopoDS_Shape& shape) : shape(shape) {
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    TopExp::MapShapes(shape, TopAbs_VERTEX, vertices);
}

std::shared_ptr<PartGeometry> PartBuilder::build(const ShapeIndex& index) const {
    auto part = std::make_shared<PartGeometry>();
    const TopTools_IndexedMapOfShape& faces = index.faces;
    const TopTools_IndexedMapOfShape& edges = index.edges;
    const TopTools_IndexedMapOfShape& vertices = index.vertices;

    part->vertices.reserve(static_cast<std::size_t>(vertices.Extent()));
    for (int i = 1; i <= vertices.Extent(); ++i)
        part->vertices.push_back(toVec(BRep_Tool::Pnt(TopoDS::Vertex(vertices(i))).XYZ()));
    addEdges(index, *part);

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

void PartBuilder::addEdges(const ShapeIndex& index, PartGeometry& part) const {
    const TopTools_IndexedMapOfShape& edges = index.edges;
    const TopTools_IndexedMapOfShape& vertices = index.vertices;
    TopTools_IndexedDataMapOfShapeListOfShape edgeFaces;
    TopExp::MapShapesAndUniqueAncestors(index.shape, TopAbs_EDGE, TopAbs_FACE, edgeFaces);
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

} // namespace vekhost
