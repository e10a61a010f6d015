#include "Projection.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepBndLib.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <HLRAlgo_Projector.hxx>
#include <HLRBRep_Algo.hxx>
#include <HLRBRep_HLRToShape.hxx>
#include <HLRBRep_PolyAlgo.hxx>
#include <HLRBRep_PolyHLRToShape.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>

#include <algorithm>
#include <cmath>
#include <limits>

#include "Flatten.h"

namespace vekhost {

namespace {
using Line = ProjectedEdge::Line;

// The kinds of line hidden-line removal sorts edges into that a drawing shows. Sewn edges
// (a cylinder's seam, edges between faces that continue one another) are left out; tangent
// edges are told by the continuity the readers and modelling operations record on them.
struct Lines {
    TopoDS_Shape sharp, outline, smooth, hiddenSharp, hiddenOutline;
};

Lines exact(const TopoDS_Shape& shape, const gp_Ax2& view, bool hidden) {
    Handle(HLRBRep_Algo) algo = new HLRBRep_Algo();
    algo->Add(shape);
    algo->Projector(HLRAlgo_Projector(view));
    algo->Update();
    algo->Hide();
    HLRBRep_HLRToShape result(algo);
    Lines lines{result.VCompound(), result.OutLineVCompound(), result.Rg1LineVCompound(), {}, {}};
    if (hidden) {
        lines.hiddenSharp = result.HCompound();
        lines.hiddenOutline = result.OutLineHCompound();
    }
    return lines;
}

Lines polygonal(const TopoDS_Shape& shape, const gp_Ax2& view, bool hidden) {
    Handle(HLRBRep_PolyAlgo) algo = new HLRBRep_PolyAlgo();
    algo->Load(shape);
    algo->Projector(HLRAlgo_Projector(view));
    algo->Update();
    HLRBRep_PolyHLRToShape result;
    result.Update(algo);
    Lines lines{result.VCompound(), result.OutLineVCompound(), result.Rg1LineVCompound(), {}, {}};
    if (hidden) {
        lines.hiddenSharp = result.HCompound();
        lines.hiddenOutline = result.OutLineHCompound();
    }
    return lines;
}

Point2 flat(const gp_Pnt& p) {
    return {p.X(), p.Y()};
}

// The edges of one kind of line, as ellipse arcs where the curve is a circle or an ellipse.
void collect(const TopoDS_Shape& compound, Line line, double tolerance, ProjectedView& out) {
    if (compound.IsNull()) return;
    for (TopExp_Explorer e(compound, TopAbs_EDGE); e.More(); e.Next()) {
        const BRepAdaptor_Curve curve(TopoDS::Edge(e.Current()));
        const double first = curve.FirstParameter();
        const double last = curve.LastParameter();
        if (!std::isfinite(first) || !std::isfinite(last)) continue;
        ProjectedEdge edge;
        edge.line = line;
        switch (curve.GetType()) {
        case GeomAbs_Line:
            edge.points = {flat(curve.Value(first)), flat(curve.Value(last))};
            break;
        case GeomAbs_Circle:
        case GeomAbs_Ellipse: {
            const bool circle = curve.GetType() == GeomAbs_Circle;
            const gp_Ax2 axes = circle ? curve.Circle().Position() : curve.Ellipse().Position();
            const double r0 = circle ? curve.Circle().Radius() : curve.Ellipse().MajorRadius();
            const double r1 = circle ? r0 : curve.Ellipse().MinorRadius();
            edge.isEllipse = true;
            edge.center = flat(axes.Location());
            edge.axis0 = {axes.XDirection().X() * r0, axes.XDirection().Y() * r0};
            edge.axis1 = {axes.YDirection().X() * r1, axes.YDirection().Y() * r1};
            edge.start = first;
            edge.end = last;
            break;
        }
        default: {
            const GCPnts_TangentialDeflection points(curve, 0.1, tolerance);
            for (int i = 1; i <= points.NbPoints(); ++i)
                edge.points.push_back(flat(points.Value(i)));
            break;
        }
        }
        if (edge.isEllipse || edge.points.size() >= 2) out.edges.push_back(std::move(edge));
    }
}

// Points of an edge, for telling whether it lies on others.
std::vector<Point2> samples(const ProjectedEdge& edge, int perArc) {
    std::vector<Point2> out;
    if (edge.isEllipse) {
        flatten::appendArc(out, edge.center, edge.axis0, edge.axis1, edge.start, edge.end, true);
        if (perArc > 0 && static_cast<int>(out.size()) > perArc) {
            std::vector<Point2> fewer;
            fewer.reserve(static_cast<std::size_t>(perArc) + 1);
            for (int i = 0; i < perArc; ++i)
                fewer.push_back(out[out.size() * static_cast<std::size_t>(i) /
                                    static_cast<std::size_t>(perArc)]);
            fewer.push_back(out.back());
            out = fewer;
        }
        return out;
    }
    for (std::size_t i = 0; i < edge.points.size(); ++i) {
        out.push_back(edge.points[i]);
        if (i + 1 < edge.points.size())
            out.push_back({(edge.points[i][0] + edge.points[i + 1][0]) / 2,
                           (edge.points[i][1] + edge.points[i + 1][1]) / 2});
    }
    return out;
}

double squaredDistance(const Point2& p, const Point2& a, const Point2& b) {
    const double dx = b[0] - a[0];
    const double dy = b[1] - a[1];
    const double length = dx * dx + dy * dy;
    const double t =
        length > 0 ? std::clamp(((p[0] - a[0]) * dx + (p[1] - a[1]) * dy) / length, 0.0, 1.0) : 0;
    const double ex = a[0] + t * dx - p[0];
    const double ey = a[1] + t * dy - p[1];
    return ex * ex + ey * ey;
}

// Hidden lines that run along visible ones (a box's back edges behind its front ones, a
// hole's rim seen edge-on) would only draw dashes over solid lines.
void dropCovered(ProjectedView& view, double tolerance) {
    std::vector<std::vector<Point2>> visible;
    for (const ProjectedEdge& edge : view.edges)
        if (edge.line != Line::Hidden) visible.push_back(samples(edge, 0));
    const double within = tolerance * tolerance;
    auto covered = [&](const Point2& p) {
        for (const auto& run : visible)
            for (std::size_t i = 0; i + 1 < run.size(); ++i)
                if (squaredDistance(p, run[i], run[i + 1]) <= within) return true;
        return false;
    };
    view.edges.erase(std::remove_if(view.edges.begin(), view.edges.end(),
                                    [&](const ProjectedEdge& edge) {
                                        if (edge.line != Line::Hidden) return false;
                                        const auto points = samples(edge, 16);
                                        return std::all_of(points.begin(), points.end(), covered);
                                    }),
                     view.edges.end());
}

void fitBox(ProjectedView& view) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    std::array<double, 4> box{infinity, infinity, -infinity, -infinity};
    for (const ProjectedEdge& edge : view.edges)
        for (const Point2& p : samples(edge, 64)) {
            box[0] = std::min(box[0], p[0]);
            box[1] = std::min(box[1], p[1]);
            box[2] = std::max(box[2], p[0]);
            box[3] = std::max(box[3], p[1]);
        }
    view.box = box[0] <= box[2] ? box : std::array<double, 4>{0, 0, 0, 0};
}
} // namespace

ProjectedView projectShape(const TopoDS_Shape& shape, const gp_Ax2& view, HiddenLines method,
                           bool hidden) {
    ProjectedView out;
    if (shape.IsNull()) return out;
    Bnd_Box bounds;
    BRepBndLib::Add(shape, bounds);
    if (bounds.IsVoid()) return out;
    const double size = std::sqrt(bounds.SquareExtent());
    const Lines lines =
        method == HiddenLines::Exact ? exact(shape, view, hidden) : polygonal(shape, view, hidden);
    const double tolerance = flatten::relativeTolerance * size;
    collect(lines.hiddenSharp, Line::Hidden, tolerance, out);
    collect(lines.hiddenOutline, Line::Hidden, tolerance, out);
    collect(lines.smooth, Line::Smooth, tolerance, out);
    collect(lines.sharp, Line::Visible, tolerance, out);
    collect(lines.outline, Line::Visible, tolerance, out);
    dropCovered(out, 1e-5 * size);
    fitBox(out);
    return out;
}

} // namespace vekhost
