#include "Holes.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepClass3d_SolidClassifier.hxx>
#include <BRepLProp_SLProps.hxx>
#include <BRepTools.hxx>
#include <BRep_Tool.hxx>
#include <Poly_Triangulation.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Vertex.hxx>
#include <gp_Cone.hxx>
#include <gp_Cylinder.hxx>
#include <gp_Lin.hxx>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <map>
#include <memory>
#include <optional>

#include "Text.h"

namespace vekhost {

namespace {
// One inner cylinder or cone and its stretch along its axis.
struct Wall {
    int face = -1;
    int node = -1;
    gp_Ax1 axis;
    bool cylinder = true;
    double diameter = 0;
    /// The angle a cylinder spans around its axis.
    double turn = 0;
    double from = 0;
    double to = 0;
};

double along(const gp_Ax1& axis, const gp_Pnt& p) {
    return gp_Vec(axis.Location(), p).Dot(gp_Vec(axis.Direction()));
}

// The face's extent along the axis, from its mesh nodes (else its vertices).
bool extent(const TopoDS_Face& face, Wall& wall) {
    wall.from = std::numeric_limits<double>::infinity();
    wall.to = -wall.from;
    TopLoc_Location location;
    const Handle(Poly_Triangulation)& mesh = BRep_Tool::Triangulation(face, location);
    if (!mesh.IsNull()) {
        const gp_Trsf place = location.Transformation();
        for (int i = 1; i <= mesh->NbNodes(); ++i) {
            const double t = along(wall.axis, mesh->Node(i).Transformed(place));
            wall.from = std::min(wall.from, t);
            wall.to = std::max(wall.to, t);
        }
    } else {
        for (TopExp_Explorer ex(face, TopAbs_VERTEX); ex.More(); ex.Next()) {
            const double t = along(wall.axis, BRep_Tool::Pnt(TopoDS::Vertex(ex.Current())));
            wall.from = std::min(wall.from, t);
            wall.to = std::max(wall.to, t);
        }
    }
    return wall.from <= wall.to;
}

// An inner wall has the material outside it: its normal, mid-face, points to the axis.
bool innerWall(const TopoDS_Face& face, Wall& wall) {
    const BRepAdaptor_Surface surface(face);
    if (surface.GetType() == GeomAbs_Cylinder) {
        const gp_Cylinder cylinder = surface.Cylinder();
        wall.axis = cylinder.Axis();
        wall.diameter = 2 * cylinder.Radius();
        wall.cylinder = true;
    } else if (surface.GetType() == GeomAbs_Cone) {
        wall.axis = surface.Cone().Axis();
        wall.cylinder = false;
    } else {
        return false;
    }
    double u0 = 0, u1 = 0, v0 = 0, v1 = 0;
    BRepTools::UVBounds(face, u0, u1, v0, v1);
    wall.turn = u1 - u0;
    BRepLProp_SLProps props(surface, (u0 + u1) / 2, (v0 + v1) / 2, 1, 1e-9);
    if (!props.IsNormalDefined()) return false;
    gp_Dir normal = props.Normal();
    if (face.Orientation() == TopAbs_REVERSED) normal.Reverse();
    const gp_Pnt p = props.Value();
    const gp_Vec fromAxis(
        wall.axis.Location().Translated(along(wall.axis, p) * gp_Vec(wall.axis.Direction())), p);
    if (fromAxis.Magnitude() < 1e-12 || gp_Vec(normal).Dot(fromAxis) >= 0) return false;
    if (!extent(face, wall)) return false;
    if (!wall.cylinder) {
        // A cone's widest circle is at one end of its stretch.
        const gp_Cone cone = surface.Cone();
        const double slope = std::tan(cone.SemiAngle());
        const double atLocation = cone.RefRadius();
        const double ends = std::max(std::fabs(atLocation + slope * wall.from),
                                     std::fabs(atLocation + slope * wall.to));
        wall.diameter = 2 * ends;
    }
    return true;
}

bool coaxial(const gp_Ax1& a, const gp_Ax1& b, double tolerance) {
    if (!a.IsParallel(b, 1e-6)) return false;
    return gp_Lin(a).Distance(b.Location()) <= tolerance;
}

std::wstring holeName(const HoleFound& hole) {
    char text[96];
    std::snprintf(text, sizeof text, "%.4g", hole.diameter);
    std::string name = "\u2300" + std::string(text);
    if (hole.through) {
        name += " through";
    } else {
        std::snprintf(text, sizeof text, " blind %.4g deep", hole.depth);
        name += text;
    }
    return wideFromUtf8(name);
}

class Finder {
public:
    Finder(Document& document, const CadShapes& shapes) : document(document), shapes(shapes) {}

    std::vector<HoleFound> run() {
        std::vector<Wall> walls;
        const auto& faceNodes = document.topo->faceRefs2;
        for (int face = 0; face < shapes.faceCount(); ++face) {
            Wall wall;
            wall.face = face;
            wall.node = face < faceNodes.size() ? faceNodes.getValue(face) : -1;
            if (wall.node >= 0 && innerWall(shapes.face(face), wall)) walls.push_back(wall);
        }
        std::vector<HoleFound> holes;
        std::vector<bool> taken(walls.size());
        for (std::size_t i = 0; i < walls.size(); ++i) {
            if (taken[i] || !walls[i].cylinder) continue;
            std::vector<Wall> group = gather(walls, i, taken);
            if (auto hole = describe(group)) holes.push_back(*hole);
        }
        return holes;
    }

private:
    // Walls on the first's axis and node whose stretches meet, one after the other.
    std::vector<Wall> gather(const std::vector<Wall>& walls, std::size_t first,
                             std::vector<bool>& taken) const {
        std::vector<Wall> group{walls[first]};
        taken[first] = true;
        const gp_Ax1 axis = walls[first].axis;
        double from = walls[first].from, to = walls[first].to;
        const double tolerance = 1e-4 * (1 + walls[first].diameter);
        for (bool grew = true; grew;) {
            grew = false;
            for (std::size_t j = 0; j < walls.size(); ++j) {
                if (taken[j] || walls[j].node != walls[first].node ||
                    !coaxial(axis, walls[j].axis, tolerance))
                    continue;
                Wall wall = walls[j];
                // Stretches measured along the first wall's axis.
                const double a = along(axis, walls[j].axis.Location());
                const double sign = axis.Direction().Dot(walls[j].axis.Direction()) > 0 ? 1 : -1;
                const double ends[2] = {a + sign * wall.from, a + sign * wall.to};
                wall.from = std::min(ends[0], ends[1]);
                wall.to = std::max(ends[0], ends[1]);
                const double gap = 1e-3 * (to - from) + tolerance;
                if (wall.from > to + gap || wall.to < from - gap) continue;
                wall.axis = axis;
                from = std::min(from, wall.from);
                to = std::max(to, wall.to);
                group.push_back(wall);
                taken[j] = true;
                grew = true;
            }
        }
        return group;
    }

    // Open at an end when the axis just beyond it is out of the material. A node's
    // classifier is made once: making one costs far more than asking it.
    bool open(int node, const gp_Pnt& beyond) {
        std::unique_ptr<BRepClass3d_SolidClassifier>& classifier = classifiers[node];
        if (!classifier)
            classifier = std::make_unique<BRepClass3d_SolidClassifier>(shapes.node(node));
        classifier->Perform(beyond, 1e-7);
        return classifier->State() != TopAbs_IN;
    }

    std::optional<HoleFound> describe(std::vector<Wall>& group) {
        const gp_Ax1 axis = group.front().axis;
        double from = std::numeric_limits<double>::infinity(), to = -from;
        double narrowest = from;
        for (const Wall& wall : group) {
            from = std::min(from, wall.from);
            to = std::max(to, wall.to);
            if (wall.cylinder) narrowest = std::min(narrowest, wall.diameter);
        }
        // A hole goes round its axis, but for where a crossing feature cuts into it; a
        // channel, a fillet, a hole cut in half does not.
        double turn = 0;
        for (const Wall& wall : group)
            if (wall.cylinder && wall.diameter <= narrowest * (1 + 1e-9)) turn += wall.turn;
        if (turn < 0.9 * 2 * M_PI) return std::nullopt;
        const gp_Pnt origin = axis.Location();
        const gp_Vec d(axis.Direction());
        const double step = std::max(1e-3 * (to - from), 0.05 * narrowest);
        const bool openLow = open(group.front().node, origin.Translated((from - step) * d));
        const bool openHigh = open(group.front().node, origin.Translated((to + step) * d));
        // Closed at both ends it is a cavity, not a hole.
        if (!openLow && !openHigh) return std::nullopt;
        // A through hole is entered from the end its widest step touches; of equal ends,
        // from the higher in z (then y, then x), as a part lies on its base.
        bool fromLow = openLow;
        if (openLow && openHigh) {
            double widestLow = 0, widestHigh = 0;
            const double near = 1e-3 * (to - from);
            for (const Wall& wall : group) {
                if (wall.from - from <= near) widestLow = std::max(widestLow, wall.diameter);
                if (to - wall.to <= near) widestHigh = std::max(widestHigh, wall.diameter);
            }
            const double upwards = std::fabs(d.Z()) > 1e-9   ? d.Z()
                                   : std::fabs(d.Y()) > 1e-9 ? d.Y()
                                                             : d.X();
            fromLow = widestLow > widestHigh || (widestLow == widestHigh && upwards < 0);
        }
        const double sign = fromLow ? 1 : -1;
        const gp_Pnt entry = origin.Translated((fromLow ? from : to) * d);
        // From the entry inwards.
        std::sort(group.begin(), group.end(), [&](const Wall& a, const Wall& b) {
            return sign * (a.from + a.to) < sign * (b.from + b.to);
        });
        HoleFound hole;
        hole.entry = {entry.X(), entry.Y(), entry.Z()};
        hole.axis = {sign * d.X(), sign * d.Y(), sign * d.Z()};
        hole.diameter = narrowest;
        hole.depth = to - from;
        hole.through = openLow && openHigh;
        hole.node = group.front().node;
        for (const Wall& wall : group) {
            hole.faces.push_back(wall.face);
            hole.stepDiameters.push_back(wall.diameter);
            hole.stepLengths.push_back(wall.to - wall.from);
        }
        hole.name = holeName(hole);
        return hole;
    }

    Document& document;
    const CadShapes& shapes;
    std::map<int, std::unique_ptr<BRepClass3d_SolidClassifier>> classifiers;
};

veksg::Point3 toPoint(const Vec3& v) {
    return veksg::Point3(static_cast<float>(v[0]), static_cast<float>(v[1]),
                         static_cast<float>(v[2]));
}

// The face that names a hole: its narrowest cylinder's.
int boreFace(const HoleFound& hole) {
    for (std::size_t i = 0; i < hole.faces.size(); ++i)
        if (hole.stepDiameters[i] == hole.diameter) return hole.faces[i];
    return hole.faces.front();
}

void record(Document& document, const std::vector<HoleFound>& holes) {
    veksg::SCFeatures& features = *document.features;
    veksg::SCHoleInfo& info = *document.holeInfo;
    features.holes.clear();
    info.holeRecords.clear();
    info.holeGroups0.clear();
    info.holeGroups1.clear();
    for (int n = 0; n < features.nodeFeatures.size(); ++n)
        features.nodeFeatures.setValue(n, {});
    std::vector<double> groupDiameters;
    for (std::size_t i = 0; i < holes.size(); ++i) {
        const HoleFound& hole = holes[i];
        const int key = static_cast<int>(i);
        const auto diameter = static_cast<float>(hole.diameter);
        const auto depth = static_cast<float>(hole.depth);
        features.holes.insert(veksg::Hole(toPoint(hole.entry), toPoint(hole.axis), diameter));
        features.nodeFeatures.resizeToFitKey(hole.node, {});
        std::vector<int> listed = features.nodeFeatures.getValue(hole.node);
        listed.push_back(key);
        features.nodeFeatures.setValue(hole.node, listed);

        veksg::HoleRecord record;
        record.origin = toPoint(hole.entry);
        record.axis = toPoint(hole.axis);
        record.kind = hole.through ? 1 : 0;
        record.face = boreFace(hole);
        record.diameter = diameter;
        record.depth = depth;
        record.name = hole.name;
        info.holeRecords.push_back(record);

        std::size_t group = 0;
        while (group < groupDiameters.size() &&
               std::fabs(groupDiameters[group] - hole.diameter) > 1e-4 * (1 + hole.diameter))
            ++group;
        if (group == groupDiameters.size()) groupDiameters.push_back(hole.diameter);
        info.holeGroups0[static_cast<int>(group)].push_back({key, record.face, diameter, depth});
        for (std::size_t s = 0; s < hole.faces.size(); ++s)
            info.holeGroups1[key].push_back({key, hole.faces[s],
                                             static_cast<float>(hole.stepDiameters[s]),
                                             static_cast<float>(hole.stepLengths[s])});
    }
}
} // namespace

std::vector<HoleFound> findHoles(Document& document, const CadShapes& shapes) {
    std::vector<HoleFound> holes = Finder(document, shapes).run();
    record(document, holes);
    return holes;
}

} // namespace vekhost
