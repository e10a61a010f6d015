#include "ProductWalk.h"

#include <NCollection_DataMap.hxx>
#include <Quantity_ColorRGBA.hxx>
#include <TColStd_HSequenceOfExtendedString.hxx>
#include <TDF_LabelMapHasher.hxx>
#include <TDataStd_Name.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <memory>
#include <string>

#include "Tessellation.h"
#include "Text.h"

namespace vekhost {

namespace {
const Quantity_ColorRGBA defaultColor(Quantity_Color(0.72, 0.74, 0.78, Quantity_TOC_RGB), 1.0f);

Matrix toMatrix(const gp_Trsf& trsf) {
    Matrix out;
    for (std::size_t col = 0; col < 4; ++col)
        for (std::size_t row = 0; row < 3; ++row)
            out.m[col * 4 + row] = trsf.Value(static_cast<int>(row) + 1, static_cast<int>(col) + 1);
    return out;
}

std::wstring nameOf(const TDF_Label& label) {
    Handle(TDataStd_Name) name;
    if (!label.FindAttribute(TDataStd_Name::GetID(), name)) return {};
    return wideFromUtf16(name->Get().ToExtString());
}

// A mirrored or scaled placement moves the shape as it moves the records, not refused.
TopoDS_Shape placed(const TopoDS_Shape& shape, const TopLoc_Location& location) {
    return shape.Moved(location, Standard_False);
}

// Where an occurrence stands, as a matrix for the records and as a location for the shapes,
// and the colour it hands down to what it holds (null: none).
struct Placement {
    Matrix world;
    TopLoc_Location location;
    const Quantity_ColorRGBA* color = nullptr;

    void moveBy(const TopLoc_Location& local) {
        world = world * toMatrix(local.Transformation());
        location = location * local;
    }
};

// A part's geometry, and the numbering of its faces and edges that its topology keys follow.
struct Part {
    std::shared_ptr<const PartGeometry> geometry;
    std::shared_ptr<const ShapeIndex> index;
};

class ProductWalk {
public:
    ProductWalk(CadShapes& shapes, DocumentBuilder& builder)
        : shapes(shapes), builder(builder),
          colors(XCAFDoc_DocumentTool::ColorTool(shapes.document()->Main())),
          layers(XCAFDoc_DocumentTool::LayerTool(shapes.document()->Main())) {}

    void walk(const TDF_Label& label, int parent, const Placement& above);

private:
    int addNode(const TDF_Label& label, const TDF_Label& definition, int parent,
                const Placement& here);
    void addPart(int node, const TDF_Label& definition, const Placement& here);
    bool colorOf(const TDF_Label& label, Quantity_ColorRGBA& color) const;
    FaceColors faceColorsOf(const TDF_Label& definition) const;
    void putOnLayers(int node, const TDF_Label& label) const;
    const Part& partOf(const TDF_Label& definition);

    CadShapes& shapes;
    DocumentBuilder& builder;
    Handle(XCAFDoc_ColorTool) colors;
    Handle(XCAFDoc_LayerTool) layers;
    NCollection_DataMap<TDF_Label, Part, TDF_LabelMapHasher> parts;
};

void ProductWalk::walk(const TDF_Label& label, int parent, const Placement& above) {
    TDF_Label definition = label;
    Placement here = above;
    if (XCAFDoc_ShapeTool::IsReference(label)) {
        XCAFDoc_ShapeTool::GetReferredShape(label, definition);
        here.moveBy(XCAFDoc_ShapeTool::GetLocation(label));
    }
    Quantity_ColorRGBA color;
    if (colorOf(label, color) || colorOf(definition, color)) here.color = &color;

    const int node = addNode(label, definition, parent, here);
    if (!XCAFDoc_ShapeTool::IsAssembly(definition)) {
        addPart(node, definition, here);
        return;
    }
    TDF_LabelSequence components;
    XCAFDoc_ShapeTool::GetComponents(definition, components);
    for (const TDF_Label& component : components)
        walk(component, node, here);
}

// An instance is named as such, else after its product; a product of another name becomes
// an attribute.
int ProductWalk::addNode(const TDF_Label& label, const TDF_Label& definition, int parent,
                         const Placement& here) {
    const bool reference = XCAFDoc_ShapeTool::IsReference(label);
    const std::wstring product = nameOf(definition);
    std::wstring name = nameOf(label);
    if (name.empty()) name = product;
    const int node = builder.addNode(name, parent, here.world);
    if (reference && !product.empty() && product != name)
        builder.addAttribute(node, L"product", product);
    putOnLayers(node, label);
    if (reference) putOnLayers(node, definition);
    shapes.setNode(node, placed(XCAFDoc_ShapeTool::GetShape(definition), here.location));
    return node;
}

void ProductWalk::addPart(int node, const TDF_Label& definition, const Placement& here) {
    const Quantity_ColorRGBA& shown = here.color ? *here.color : defaultColor;
    const Quantity_Color& rgb = shown.GetRGB();
    const Part& part = partOf(definition);
    const PartKeys keys = builder.addPart(
        node, part.geometry,
        materialFromColor(static_cast<float>(rgb.Red()), static_cast<float>(rgb.Green()),
                          static_cast<float>(rgb.Blue()), shown.Alpha()));
    const ShapeIndex& index = *part.index;
    for (int i = 1; i <= index.faces.Extent(); ++i)
        shapes.setFace(keys.face + i - 1, TopoDS::Face(placed(index.faces(i), here.location)));
    for (int i = 1; i <= index.edges.Extent(); ++i)
        shapes.setEdge(keys.edge + i - 1, TopoDS::Edge(placed(index.edges(i), here.location)));
}

bool ProductWalk::colorOf(const TDF_Label& label, Quantity_ColorRGBA& color) const {
    return colors->GetColor(label, XCAFDoc_ColorSurf, color) ||
           colors->GetColor(label, XCAFDoc_ColorGen, color);
}

// Colours of sub-shapes: bodies first, so that a face's own colour wins.
FaceColors ProductWalk::faceColorsOf(const TDF_Label& definition) const {
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
    return faceColors;
}

void ProductWalk::putOnLayers(int node, const TDF_Label& label) const {
    Handle(TColStd_HSequenceOfExtendedString) names;
    if (!layers->GetLayers(label, names) || names.IsNull()) return;
    for (const TCollection_ExtendedString& name : *names)
        builder.putOnLayer(node, builder.layer(wideFromUtf16(name.ToExtString())));
}

const Part& ProductWalk::partOf(const TDF_Label& definition) {
    if (const Part* known = parts.Seek(definition)) return *known;
    Quantity_ColorRGBA base = defaultColor;
    colorOf(definition, base);
    const FaceColors faceColors = faceColorsOf(definition);
    bool perVertexColors = false;
    for (FaceColors::Iterator it(faceColors); it.More() && !perVertexColors; it.Next())
        perVertexColors = !(it.Value() == base);

    const auto index = std::make_shared<const ShapeIndex>(XCAFDoc_ShapeTool::GetShape(definition));
    const PartBuilder partBuilder{faceColors, base, perVertexColors};
    return *parts.Bound(definition, {partBuilder.build(*index), index});
}
} // namespace

void walkProducts(const TDF_LabelSequence& roots, CadShapes& shapes, DocumentBuilder& builder) {
    ProductWalk walk(shapes, builder);
    for (const TDF_Label& root : roots)
        walk.walk(root, -1, Placement());
}

} // namespace vekhost
