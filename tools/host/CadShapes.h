#pragma once

#include <TDF_LabelSequence.hxx>
#include <TDocStd_Document.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>

#include <vector>

namespace vekhost {

/// The boundary representation behind a CAD load: Open CASCADE's shape for every node, face
/// and edge key that the load made in `SCSceneTopo`, placed in the world as those records
/// are, and the document the file was read into, for the product data that the records do
/// not carry (PMI, for one). Owns the document: it is closed with this object.
class CadShapes {
public:
    /// Starts with an empty document to read a file into.
    CadShapes();
    ~CadShapes();
    CadShapes(const CadShapes&) = delete;
    CadShapes& operator=(const CadShapes&) = delete;

    const Handle(TDocStd_Document) & document() const { return doc; }

    /// Keys run from 0 to the count less one, as in `SCSceneTopo::nodes`, `faces`, `edges`.
    int nodeCount() const { return static_cast<int>(nodes.size()); }
    int faceCount() const { return static_cast<int>(faces.size()); }
    int edgeCount() const { return static_cast<int>(edges.size()); }
    /// The shape of a node with everything below it. These throw std::out_of_range for a key
    /// outside the count.
    const TopoDS_Shape& node(int key) const;
    const TopoDS_Face& face(int key) const;
    const TopoDS_Edge& edge(int key) const;

    void setNode(int key, const TopoDS_Shape& shape);
    void setFace(int key, const TopoDS_Face& face);
    void setEdge(int key, const TopoDS_Edge& edge);

private:
    Handle(TDocStd_Document) doc;
    std::vector<TopoDS_Shape> nodes;
    std::vector<TopoDS_Face> faces;
    std::vector<TopoDS_Edge> edges;
};

/// The shapes of XCAF labels gathered in one compound.
TopoDS_Compound compoundOf(const TDF_LabelSequence& labels);

} // namespace vekhost
