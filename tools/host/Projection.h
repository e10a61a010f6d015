#pragma once

#include <TopoDS_Shape.hxx>
#include <gp_Ax2.hxx>

#include <array>
#include <vector>

#include "DrawingBuilder.h"

namespace vekhost {

/// Open CASCADE's two hidden-line removals: exact on the B-rep (`HLRBRep_Algo`), whose
/// result keeps circles and ellipses, or on the tessellation (`HLRBRep_PolyAlgo`), faster,
/// whose result is straight segments only.
enum class HiddenLines { Exact, Polygonal };

/// One edge of a projected view, in the view plane's coordinates (x right, y up, model
/// units): a polyline, or an arc of an ellipse when the edge is one.
struct ProjectedEdge {
    enum class Line { Visible, Smooth, Hidden };
    Line line = Line::Visible;
    bool isEllipse = false;
    std::vector<Point2> points;
    Point2 center{0, 0};
    Point2 axis0{0, 0};
    Point2 axis1{0, 0};
    double start = 0;
    double end = 0;
};

struct ProjectedView {
    std::vector<ProjectedEdge> edges;
    /// min x, min y, max x, max y of the visible and hidden edges; zero when empty.
    std::array<double, 4> box{0, 0, 0, 0};
};

/// The shape seen along `view` (its direction points from the shape to the eye, its X axis
/// to the right): sharp edges and outlines, visible and, with `hidden`, hidden, plus the
/// visible tangent edges between smooth faces; hidden lines that lie on visible ones are
/// left out. The polygonal method needs the shape tessellated.
ProjectedView projectShape(const TopoDS_Shape& shape, const gp_Ax2& view, HiddenLines method,
                           bool hidden);

} // namespace vekhost
