#include "Measurement.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <BRepGProp.hxx>
#include <GProp_GProps.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS.hxx>
#include <gp_Circ.hxx>
#include <gp_Pln.hxx>

#include <cmath>
#include <cstdio>

#include "Text.h"

namespace vekview {

namespace {
constexpr double degrees = 57.29577951308232;

Vec3 toVec(const gp_Pnt& p) {
    return {p.X(), p.Y(), p.Z()};
}

veksg::Point3 toPoint(const Vec3& v) {
    return veksg::Point3(static_cast<float>(v[0]), static_cast<float>(v[1]),
                         static_cast<float>(v[2]));
}

std::string format(const char* pattern, double value) {
    char text[64];
    std::snprintf(text, sizeof text, pattern, value);
    return text;
}

MeasureResult failure(const std::string& why) {
    MeasureResult result;
    result.text = why;
    return result;
}
} // namespace

Measurement::Measurement(vekhost::Document& document,
                         std::shared_ptr<const vekhost::CadShapes> shapes)
    : doc(document), shapes(std::move(shapes)) {
}

void Measurement::setMode(MeasureMode mode) {
    current = mode;
    picks.clear();
}

int Measurement::picksNeeded() const {
    const int needed = current == MeasureMode::Radius ? 1 : 2;
    return needed - static_cast<int>(picks.size());
}

void Measurement::clear() {
    doc.tempGraphics->cleanup();
    picks.clear();
}

std::optional<MeasureResult> Measurement::add(const Pick& pick) {
    if (!pick.hit && pick.edge < 0) return failure("nothing there to measure");
    const bool onEdge = pick.edge >= 0 && (current == MeasureMode::Radius ||
                                           current == MeasureMode::Entities || !pick.hit);
    doc.tempGraphics->tempValues.insert(toPoint(onEdge ? pick.edgePoint : pick.point));
    picks.push_back(pick);
    if (picksNeeded() > 0) return std::nullopt;
    const std::vector<Pick> taken = std::move(picks);
    picks.clear();
    try {
        switch (current) {
        case MeasureMode::Points:
            return points(taken[0], taken[1]);
        case MeasureMode::Entities:
            return entities(taken[0], taken[1]);
        case MeasureMode::Radius:
            return radius(taken[0]);
        case MeasureMode::Angle:
            return angle(taken[0], taken[1]);
        }
    } catch (const Standard_Failure& error) {
        return failure(std::string("the geometry does not allow it: ") + error.GetMessageString());
    }
    return std::nullopt;
}

MeasureResult Measurement::points(const Pick& a, const Pick& b) {
    if (!a.hit || !b.hit) return failure("pick two points on the model");
    const double value = length(b.point - a.point);
    const std::string label = format("%.4g", value);
    record(a.point, b.point, (a.point + b.point) * 0.5, value, label);
    return {true, value, label};
}

MeasureResult Measurement::entities(const Pick& a, const Pick& b) {
    if (!shapes) return failure("distances between faces and edges need a CAD file");
    auto shapeOf = [this](const Pick& pick) -> TopoDS_Shape {
        if (pick.edge >= 0 && pick.edge < shapes->edgeCount()) return shapes->edge(pick.edge);
        if (pick.face >= 0 && pick.face < shapes->faceCount()) return shapes->face(pick.face);
        return {};
    };
    const TopoDS_Shape first = shapeOf(a);
    const TopoDS_Shape second = shapeOf(b);
    if (first.IsNull() || second.IsNull()) return failure("pick two faces or edges");
    BRepExtrema_DistShapeShape extrema(first, second);
    if (!extrema.IsDone() || extrema.NbSolution() < 1) return failure("no distance found");
    const Vec3 from = toVec(extrema.PointOnShape1(1));
    const Vec3 to = toVec(extrema.PointOnShape2(1));
    const double value = extrema.Value();
    const std::string label = format("%.4g", value);
    record(from, to, (from + to) * 0.5, value, label);
    return {true, value, label};
}

MeasureResult Measurement::radius(const Pick& pick) {
    if (!shapes || pick.edge < 0 || pick.edge >= shapes->edgeCount())
        return failure("pick a circular edge of a CAD file");
    const BRepAdaptor_Curve curve(shapes->edge(pick.edge));
    if (curve.GetType() != GeomAbs_Circle) return failure("that edge is not circular");
    const gp_Circ circle = curve.Circle();
    const Vec3 centre = toVec(circle.Location());
    const double value = circle.Radius();
    const std::string label = "R " + format("%.4g", value);
    record(centre, pick.edgePoint, pick.edgePoint, value, label);
    return {true, value, label};
}

MeasureResult Measurement::angle(const Pick& a, const Pick& b) {
    auto normalOf = [this](const Pick& pick, Vec3& normal) {
        if (!shapes || pick.face < 0 || pick.face >= shapes->faceCount()) return false;
        const TopoDS_Face& face = shapes->face(pick.face);
        const BRepAdaptor_Surface surface(face);
        if (surface.GetType() != GeomAbs_Plane) return false;
        const gp_Dir d = surface.Plane().Axis().Direction();
        const double flip = face.Orientation() == TopAbs_REVERSED ? -1.0 : 1.0;
        normal = Vec3{d.X(), d.Y(), d.Z()} * flip;
        return true;
    };
    Vec3 first{};
    Vec3 second{};
    if (!normalOf(a, first) || !normalOf(b, second))
        return failure("pick two planar faces of a CAD file");
    const double value = std::atan2(length(cross(first, second)), dot(first, second)) * degrees;
    const std::string label = format("%.4g", value) + " deg";
    record(a.point, b.point, (a.point + b.point) * 0.5, value, label);
    return {true, value, label};
}

void Measurement::record(const Vec3& from, const Vec3& to, const Vec3& labelAt, double value,
                         const std::string& label) {
    auto measure = std::make_shared<veksg::Measure>();
    measure->point1 = toPoint(from);
    measure->point2 = toPoint(to);
    measure->point3 = toPoint(labelAt);
    measure->value = static_cast<float>(value);
    measure->measureSetting = static_cast<int>(current) + 1;
    measure->measureText = vekhost::wideFromUtf8(label);
    measure->text3d->text = measure->measureText;
    measure->text3d->position = measure->point3;
    measure->leader = std::make_shared<veksg::Polyline>();
    measure->leader->points = {measure->point1, measure->point2};
    doc.tempGraphics->measures.insert(measure);
    doc.tempGraphics->texts3d.insert(measure->text3d);
}

std::optional<double> Measurement::faceArea(int face) const {
    if (!shapes || face < 0 || face >= shapes->faceCount()) return std::nullopt;
    try {
        GProp_GProps properties;
        BRepGProp::SurfaceProperties(shapes->face(face), properties);
        return properties.Mass();
    } catch (const Standard_Failure&) {
        return std::nullopt;
    }
}

const char* surfaceTypeName(int kind) {
    switch (kind) {
    case GeomAbs_Plane:
        return "plane";
    case GeomAbs_Cylinder:
        return "cylinder";
    case GeomAbs_Cone:
        return "cone";
    case GeomAbs_Sphere:
        return "sphere";
    case GeomAbs_Torus:
        return "torus";
    case GeomAbs_BezierSurface:
        return "Bezier surface";
    case GeomAbs_BSplineSurface:
        return "B-spline surface";
    case GeomAbs_SurfaceOfRevolution:
        return "surface of revolution";
    case GeomAbs_SurfaceOfExtrusion:
        return "surface of extrusion";
    case GeomAbs_OffsetSurface:
        return "offset surface";
    case GeomAbs_OtherSurface:
        return "other surface";
    default:
        return "unknown";
    }
}

const char* curveTypeName(int kind) {
    switch (kind) {
    case GeomAbs_Line:
        return "line";
    case GeomAbs_Circle:
        return "circle";
    case GeomAbs_Ellipse:
        return "ellipse";
    case GeomAbs_Hyperbola:
        return "hyperbola";
    case GeomAbs_Parabola:
        return "parabola";
    case GeomAbs_BezierCurve:
        return "Bezier curve";
    case GeomAbs_BSplineCurve:
        return "B-spline curve";
    case GeomAbs_OffsetCurve:
        return "offset curve";
    case GeomAbs_OtherCurve:
        return "other curve";
    default:
        return "unknown";
    }
}

} // namespace vekview
