#include "CadShapes.h"

#include <BRep_Builder.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <stdexcept>

#include "CadFile.h"

namespace vekhost {

namespace {
template <typename Shape>
const Shape& at(const std::vector<Shape>& shapes, int key) {
    if (key < 0 || static_cast<std::size_t>(key) >= shapes.size())
        throw std::out_of_range("no shape for key " + std::to_string(key));
    return shapes[static_cast<std::size_t>(key)];
}

template <typename Shape>
void put(std::vector<Shape>& shapes, int key, const Shape& shape) {
    if (key < 0) throw std::out_of_range("no shape for key " + std::to_string(key));
    if (static_cast<std::size_t>(key) >= shapes.size())
        shapes.resize(static_cast<std::size_t>(key) + 1);
    shapes[static_cast<std::size_t>(key)] = shape;
}
} // namespace

CadShapes::CadShapes() : doc(newCadDocument()) {
}

CadShapes::~CadShapes() {
    closeCadDocument(doc);
}

const TopoDS_Shape& CadShapes::node(int key) const {
    return at(nodes, key);
}

const TopoDS_Face& CadShapes::face(int key) const {
    return at(faces, key);
}

const TopoDS_Edge& CadShapes::edge(int key) const {
    return at(edges, key);
}

void CadShapes::setNode(int key, const TopoDS_Shape& shape) {
    put(nodes, key, shape);
}

void CadShapes::setFace(int key, const TopoDS_Face& face) {
    put(faces, key, face);
}

void CadShapes::setEdge(int key, const TopoDS_Edge& edge) {
    put(edges, key, edge);
}

TopoDS_Compound compoundOf(const TDF_LabelSequence& labels) {
    TopoDS_Compound all;
    BRep_Builder builder;
    builder.MakeCompound(all);
    for (const TDF_Label& label : labels)
        builder.Add(all, XCAFDoc_ShapeTool::GetShape(label));
    return all;
}

} // namespace vekhost
