// The analyses on parts whose answers are known exactly, built here with Open CASCADE.
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepOffsetAPI_ThruSections.hxx>
#include <BRepTools.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Wire.hxx>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "Draft.h"
#include "Loader.h"
#include "PlacedMesh.h"
#include "TestFiles.h"

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

} // namespace
} // namespace vekhost::test
