#include <type_traits>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::OBBox;
using veksg::Point3;

static_assert(sizeof(veksg::VN) == 6 * sizeof(float) && sizeof(veksg::NV) == 6 * sizeof(float));
static_assert(sizeof(veksg::VNC) == 10 * sizeof(float) && sizeof(veksg::CNV) == 10 * sizeof(float));
static_assert(sizeof(veksg::VNT) == 8 * sizeof(float) && sizeof(veksg::TNV) == 8 * sizeof(float));
static_assert(std::is_trivially_copyable_v<veksg::VNC> && std::is_trivially_copyable_v<veksg::TNV>);

TEST(OBBox, CornersFollowTheirNames) {
    OBBox box;
    box.center = Point3(10.0f, 20.0f, 30.0f);
    box.axisX = Point3(1.0f, 0.0f, 0.0f);
    box.axisY = Point3(0.0f, 2.0f, 0.0f);
    box.axisZ = Point3(0.0f, 0.0f, 4.0f);
    const struct {
        const char* name;
        Point3 corner;
        Point3 expected;
    } corners[] = {
        {"llb", box.llb(), Point3(9, 18, 26)},  {"lrb", box.lrb(), Point3(11, 18, 26)},
        {"lrf", box.lrf(), Point3(11, 18, 34)}, {"llf", box.llf(), Point3(9, 18, 34)},
        {"urf", box.urf(), Point3(11, 22, 34)}, {"ulf", box.ulf(), Point3(9, 22, 34)},
        {"urb", box.urb(), Point3(11, 22, 26)}, {"ulb", box.ulb(), Point3(9, 22, 26)},
    };
    for (const auto& c : corners)
        EXPECT_EQ(c.corner, c.expected) << c.name;
}

} // namespace
