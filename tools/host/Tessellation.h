#pragma once

#include <NCollection_DataMap.hxx>
#include <Quantity_ColorRGBA.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopTools_ShapeMapHasher.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Shape.hxx>

#include <memory>

#include "Builder.h"
#include "Progress.h"

namespace vekhost {

/// Meshes every face of `shape` with Open CASCADE's mesher, in parallel, and gives each mesh
/// node the normal of its surface. `deflection` is the chordal deflection in model units; 0
/// or less picks a thousandth of the shape's diagonal. Returns the deflection used.
double tessellate(const TopoDS_Shape& shape, double deflection, Progress& progress);

/// A shape's faces, edges and vertices, numbered from 1 as Open CASCADE numbers them: the
/// lists of the part made from the shape follow these numbers, from 0.
struct ShapeIndex {
    explicit ShapeIndex(const TopoDS_Shape& shape);

    TopoDS_Shape shape;
    TopTools_IndexedMapOfShape faces;
    TopTools_IndexedMapOfShape edges;
    TopTools_IndexedMapOfShape vertices;
};

using FaceColors = NCollection_DataMap<TopoDS_Shape, Quantity_ColorRGBA, TopTools_ShapeMapHasher>;

/// Turns a meshed shape into the geometry of a part: its faces' triangles in one mesh, its
/// edges' polygons in one polyline, and the B-rep lists, all in the shape's coordinates.
struct PartBuilder {
    /// Colours of single faces; the others take `baseColor`.
    const FaceColors& faceColors;
    Quantity_ColorRGBA baseColor;
    /// Whether the mesh holds a colour per vertex (VNC) rather than none (VN).
    bool perVertexColors = false;

    std::shared_ptr<PartGeometry> build(const ShapeIndex& index) const;

private:
    void addEdges(const ShapeIndex& index, PartGeometry& part) const;
    void addFaceTriangles(const TopoDS_Face& face, PartGeometry::FaceData& data,
                          veksg::Mesh& mesh) const;
};

} // namespace vekhost
