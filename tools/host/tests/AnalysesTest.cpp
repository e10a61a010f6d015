// The analyses on parts whose answers are known exactly, built here with Open CASCADE.
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepOffsetAPI_ThruSections.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCone.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakeSphere.hxx>
#include <BRepTools.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Wire.hxx>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "Comparison.h"
#include "Draft.h"
#include "Holes.h"
#include "Loader.h"
#include "PlacedMesh.h"
#include "RayScene.h"
#include "TestFiles.h"
#include "Thickness.h"

namespace vekhost::test {
namespace {

const double pi = std::acos(-1.0);

// The shape goes through a BREP file and the ordinary load, as a user's part would.
LoadResult loadShape(const TopoDS_Shape& shape, const std::string& name, double deflection) {
    const std::string path = scratchDirectory() + "/" + name + ".brep";
    if (!BRepTools::Write(shape, path.c_str())) throw std::runtime_error("cannot write " + path);
    LoadOptions options;
    options.deflection = deflection;
    return loadFile(path, options);
}

// A square frustum: a side of `base` at z 0, narrowing upwards to height `height` so that
// every side leans inwards by `draft` degrees.
TopoDS_Shape frustum(double base, double height, double draft) {
    const double top = base - 2 * height * std::tan(draft * pi / 180);
    auto square = [](double side, double z) {
        const double h = side / 2;
        return BRepBuilderAPI_MakePolygon(gp_Pnt(-h, -h, z), gp_Pnt(h, -h, z), gp_Pnt(h, h, z),
                                          gp_Pnt(-h, h, z), true)
            .Wire();
    };
    BRepOffsetAPI_ThruSections loft(true, true);
    loft.AddWire(square(base, 0));
    loft.AddWire(square(top, height));
    loft.Build();
    return loft.Shape();
}

TEST(Draft, SidesOfAFrustumCarryItsDraftAndTheCapsTheirRightAngles) {
    const LoadResult result = loadShape(frustum(40, 10, 5), "frustum", 0.01);
    Document& document = *result.document;
    const PlacedMesh mesh = PlacedMesh::of(document);
    // Pulled upwards the sides are drafted by 5 degrees; pulled sideways, one side is
    // positive, one negative, and the caps stand at right angles to the pull.
    analyseDraft(document, mesh, {{0, 0, 2}, 3});
    const veksg::SCDraftAngleAnalysis& draft = *document.draft;
    ASSERT_TRUE(draft.computed);
    ASSERT_EQ(static_cast<int>(draft.rangesA.size()), document.topo->faces.size());
    EXPECT_FLOAT_EQ(draft.point0[2], 1.0f);
    EXPECT_FLOAT_EQ(draft.minAngle, -3.0f);
    EXPECT_FLOAT_EQ(draft.maxAngle, 3.0f);
    int sides = 0, tops = 0, bottoms = 0;
    for (std::size_t face = 0; face < draft.rangesA.size(); ++face) {
        const veksg::DraftRange& range = draft.rangesA[face];
        ASSERT_GT(range.count, 0);
        const auto kind = static_cast<DraftClass>(draft.codes[face]);
        if (std::fabs(range.from - 5) < 0.1 && std::fabs(range.to - 5) < 0.1) {
            EXPECT_EQ(kind, DraftClass::positive);
            ++sides;
        } else if (range.from > 89.9f) {
            ++tops;
        } else if (range.to < -89.9f) {
            EXPECT_EQ(kind, DraftClass::negative);
            ++bottoms;
        }
    }
    EXPECT_EQ(sides, 4);
    EXPECT_EQ(tops, 1);
    EXPECT_EQ(bottoms, 1);

    analyseDraft(document, mesh, {{1, 0, 0}, 6});
    int counts[4] = {};
    for (std::size_t face = 0; face < draft.rangesA.size(); ++face)
        ++counts[draft.codes[face] + 1];
    // Sides facing +x and -x stand at 85 degrees to the pull; the other two lean 5 degrees
    // away from it only in y, so they lie within the band, and so do the caps.
    EXPECT_EQ(counts[0], 1); // negative
    EXPECT_EQ(counts[1], 4); // insufficient
    EXPECT_EQ(counts[2], 1); // positive
    EXPECT_THROW(analyseDraft(document, mesh, {{0, 0, 0}, 1}), std::invalid_argument);
}

// A plate 100 x 40 x 10 drilled from its top face (z 10) downwards.
struct Drilling {
    double x;
    double diameter;
    double depth; // 0: through
    double counterbore = 0;
    double counterboreDepth = 0;
    double countersink = 0; // its diameter at the top, 90 degrees
};

TopoDS_Shape drilledPlate(const std::vector<Drilling>& drillings) {
    TopoDS_Shape plate = BRepPrimAPI_MakeBox(gp_Pnt(0, 0, 0), 100, 40, 10).Shape();
    // A boss on top: a cylinder with the material inside, which is no hole.
    plate = BRepAlgoAPI_Fuse(
                plate, BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(90, 30, 10), gp::DZ()), 4, 5).Shape())
                .Shape();
    auto tool = [](double x, double diameter, double depth) {
        // Down from a little above the top, so that the cut leaves no sliver.
        const double length = depth > 0 ? depth + 1 : 12;
        return BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(x, 20, 11 - length), gp::DZ()), diameter / 2,
                                        length)
            .Shape();
    };
    // A channel across the top, half a cylinder: no hole.
    plate =
        BRepAlgoAPI_Cut(
            plate, BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(48, -1, 10), gp::DY()), 3, 42).Shape())
            .Shape();
    for (const Drilling& d : drillings) {
        plate = BRepAlgoAPI_Cut(plate, tool(d.x, d.diameter, d.depth)).Shape();
        if (d.counterbore > 0)
            plate = BRepAlgoAPI_Cut(plate, tool(d.x, d.counterbore, d.counterboreDepth)).Shape();
        if (d.countersink > 0) {
            // From its apex on the axis, widening upwards past the top.
            const double apex = 10 - d.countersink / 2;
            plate =
                BRepAlgoAPI_Cut(plate, BRepPrimAPI_MakeCone(gp_Ax2(gp_Pnt(d.x, 20, apex), gp::DZ()),
                                                            0, 11 - apex, 11 - apex)
                                           .Shape())
                    .Shape();
        }
    }
    return plate;
}

TEST(Holes, ThroughBlindCounterboredAndCountersunkHolesOfAPlate) {
    const std::vector<Drilling> drillings = {{10, 4, 0}, {25, 6, 0, 0, 0, 10}, {40, 8, 0},
                                             {55, 6, 0}, {70, 5, 6},           {85, 6, 0, 11, 4}};
    const LoadResult result = loadShape(drilledPlate(drillings), "plate", 0.01);
    Document& document = *result.document;
    const std::vector<HoleFound> holes = findHoles(document, *result.shapes);
    ASSERT_EQ(holes.size(), drillings.size());
    for (const Drilling& d : drillings) {
        SCOPED_TRACE("hole at x " + std::to_string(d.x));
        const auto found = std::find_if(holes.begin(), holes.end(), [&](const HoleFound& h) {
            return std::fabs(h.entry[0] - d.x) < 1e-6 && std::fabs(h.entry[1] - 20) < 1e-6;
        });
        ASSERT_NE(found, holes.end());
        EXPECT_NEAR(found->diameter, d.diameter, 1e-6);
        EXPECT_NEAR(found->depth, d.depth > 0 ? d.depth : 10, 0.01);
        EXPECT_EQ(found->through, d.depth == 0);
        // Entered from the top, into the plate.
        EXPECT_NEAR(found->entry[2], 10, 1e-6);
        EXPECT_NEAR(found->axis[2], -1, 1e-9);
        const bool stepped = d.counterbore > 0 || d.countersink > 0;
        EXPECT_EQ(found->faces.size(), stepped ? 2U : 1U);
        if (stepped) {
            // The step at the entry first, then the bore.
            EXPECT_NEAR(found->stepDiameters[0], d.counterbore + d.countersink, 0.01);
            EXPECT_NEAR(found->stepLengths[0],
                        d.counterbore > 0 ? d.counterboreDepth : (d.countersink - d.diameter) / 2,
                        0.01);
            EXPECT_NEAR(found->stepDiameters[1], d.diameter, 1e-6);
            EXPECT_EQ(found->name, L"\u23006 through");
        }
    }

    const veksg::SCHoleInfo& info = *document.holeInfo;
    ASSERT_EQ(info.holeRecords.size(), holes.size());
    // Equal diameters share a group: 4, 6 (three holes), 8, 5.
    ASSERT_EQ(info.holeGroups0.size(), 4U);
    std::size_t inGroups = 0;
    for (const auto& [group, entries] : info.holeGroups0) {
        inGroups += entries.size();
        for (const veksg::HoleGroupEntry& entry : entries)
            EXPECT_FLOAT_EQ(entry.diameter, entries.front().diameter);
    }
    EXPECT_EQ(inGroups, holes.size());
    const veksg::SCFeatures& features = *document.features;
    ASSERT_EQ(features.holes.size(), static_cast<int>(holes.size()));
    EXPECT_EQ(features.nodeFeatures.getValue(holes.front().node).size(), holes.size());
}

TEST(Thickness, AHollowBoxMeasuresItsWallsAndNeverZeroAtItsEdges) {
    // Walls 2 thick all round a closed void, turned off the axes so that rays along a face
    // run through its plane by rounding rather than exactly in it.
    const TopoDS_Shape box =
        BRepAlgoAPI_Cut(BRepPrimAPI_MakeBox(gp_Pnt(0, 0, 0), 40, 30, 20).Shape(),
                        BRepPrimAPI_MakeBox(gp_Pnt(2, 2, 2), 36, 26, 16).Shape())
            .Shape();
    gp_Trsf turn;
    turn.SetRotation(gp_Ax1(gp_Pnt(1, 2, 3), gp_Dir(1, 2, 3)), 0.7);
    const TopoDS_Shape turned = BRepBuilderAPI_Transform(box, turn, true).Shape();
    const LoadResult result = loadShape(turned, "hollow", 0.01);
    Document& document = *result.document;
    const PlacedMesh mesh = PlacedMesh::of(document);
    const RayScene scene(mesh);
    analyseThickness(document, mesh, scene, {2.5});
    const veksg::SCThicknessAnalysis& thickness = *document.thickness;
    ASSERT_TRUE(thickness.computed);
    ASSERT_EQ(thickness.thicknesses.size(), mesh.points.size());
    // Every ray starts inside a closed solid, so every one finds its wall; those from an
    // edge or corner run along a neighbouring face, which must not stop them at once.
    EXPECT_EQ(thickness.value1, 0);
    std::size_t walls = 0;
    for (std::size_t i = 0; i < thickness.thicknesses.size(); ++i) {
        const float value = thickness.thicknesses[i];
        ASSERT_GT(value, 2 - 1e-3) << "vertex " << i;
        walls += std::fabs(value - 2) < 1e-3 ? 1 : 0;
    }
    // Each face is two triangles, so every vertex is a corner: those of the void see a wall
    // of 2, those outside see across the box.
    EXPECT_EQ(walls, mesh.points.size() / 2);
    EXPECT_NEAR(thickness.thicknesses[static_cast<std::size_t>(thickness.index0)], 2, 1e-3);
    EXPECT_NEAR(thickness.thicknesses[static_cast<std::size_t>(thickness.index1)], 40, 1e-3);
    // Below 2.5: exactly the walls, listed by vertex.
    EXPECT_EQ(thickness.value0, static_cast<int>(walls));
    ASSERT_EQ(thickness.ids.size(), walls);
    for (const unsigned long id : thickness.ids)
        EXPECT_NEAR(thickness.thicknesses[id], 2, 1e-3);
}

TEST(Thickness, RaysFromAnEdgeIgnoreTheFaceTheyGraze) {
    // Sides 0.3 degrees off the vertical: a ray up from the bottom's edge leaves through the
    // side at once.
    const LoadResult result = loadShape(frustum(40, 10, 0.3), "steep", 0.01);
    Document& document = *result.document;
    const PlacedMesh mesh = PlacedMesh::of(document);
    const RayScene scene(mesh);
    analyseThickness(document, mesh, scene, {});
    const veksg::SCThicknessAnalysis& thickness = *document.thickness;
    for (std::size_t i = 0; i < thickness.thicknesses.size(); ++i) {
        const float value = thickness.thicknesses[i];
        EXPECT_TRUE(value < 0 || value > 9.9) << "vertex " << i << ": " << value;
    }
    EXPECT_NEAR(thickness.thicknesses[static_cast<std::size_t>(thickness.index0)], 10, 0.01);
}

TEST(Comparison, ACopyMovedByAKnownDistance) {
    const double radius = 5;
    const TopoDS_Shape ball = BRepPrimAPI_MakeSphere(gp_Pnt(0, 0, 0), radius).Shape();
    gp_Trsf lift;
    lift.SetTranslation(gp_Vec(0, 0, 0.5));
    const double deflection = 0.01;
    const LoadResult original = loadShape(ball, "original", deflection);
    const LoadResult moved =
        loadShape(BRepBuilderAPI_Transform(ball, lift, true).Shape(), "moved", deflection);
    const PlacedMesh reference = PlacedMesh::of(*original.document);
    const RayScene scene(reference);
    Document& document = *moved.document;
    const PlacedMesh mesh = PlacedMesh::of(document);
    const ComparisonResult result = compareWith(document, mesh, scene, L"original.brep");
    // Every vertex lies on the lifted sphere; its distance to the original is its distance
    // from the centre less the radius, up to the original's chords.
    ASSERT_EQ(result.distances.size(), mesh.points.size());
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        const Vec3& p = mesh.points[i];
        const double expected = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]) - radius;
        ASSERT_NEAR(result.distances[i], expected, deflection) << "vertex " << i;
    }
    // The poles stand 0.5 out at the top and 0.5 in at the bottom.
    EXPECT_NEAR(result.max, 0.5, 1e-5);
    EXPECT_NEAR(result.min, -0.5, deflection);
    EXPECT_STREQ(document.comparison->refFile(), L"original.brep");
    EXPECT_EQ(std::wstring(document.comparison->cmpFile()), document.info->filePath);

    const ComparisonResult same = compareWith(document, mesh, RayScene(mesh), L"itself");
    EXPECT_NEAR(same.rms, 0, 1e-6);
}

} // namespace
} // namespace vekhost::test
