#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::Point3;

// Where arguments of one type could land in each other's fields.
TEST(States, ConstructorsPutEachArgumentInItsField) {
    const veksg::CameraState camera(1, Point3(1, 2, 3), Point3(4, 5, 6), Point3(0, 1, 0));
    EXPECT_EQ(camera.position, Point3(1, 2, 3));
    EXPECT_EQ(camera.target, Point3(4, 5, 6));
    EXPECT_EQ(camera.up, Point3(0, 1, 0));

    // The first list lands in the second field.
    const veksg::VisibilityState visibility(1, {1, 2}, {7});
    EXPECT_EQ(visibility.ids, (std::vector<int>{1, 2}));
    EXPECT_EQ(visibility.values, (std::vector<int>{7}));

    // The point comes first although the one-byte kind is the first field.
    const veksg::TriadInfo triad(Point3(1, 2, 3), 'k', static_cast<unsigned char>(200),
                                 {{Point3(0, 0, 1)}, {}},
                                 {{vekmath::MatrixUtils::createIdentity()}}, {Point3(4, 5, 6)});
    EXPECT_EQ(triad.kind, 'k');
    EXPECT_EQ(triad.origin, Point3(1, 2, 3));
    EXPECT_EQ(triad.options, 200);
    EXPECT_EQ(triad.pointLists, (std::vector<std::vector<Point3>>{{Point3(0, 0, 1)}, {}}));
    EXPECT_EQ(triad.points, std::vector<Point3>{Point3(4, 5, 6)});

    const veksg::SectionState section(1, {}, {10, 11}, 6, {true, false}, nullptr);
    EXPECT_EQ(section.ids, (std::vector<int>{10, 11}));
    EXPECT_EQ(section.mode, 6);

    EXPECT_FALSE(veksg::ClipNodeState(1, {false, true}).flag);
}

TEST(States, ClearEmptiesTheListsAndKeepsTheRest) {
    veksg::AppearanceState look(21, {1, 2, 3}, {1, 2}, {0.5f});
    look.clear();
    EXPECT_TRUE(look.ids.empty() && look.colors.empty() && look.transparencies.empty());
    EXPECT_EQ(look.getCmdId(), 21);

    const auto triad = std::make_shared<veksg::TriadInfo>();
    veksg::TransformState transform(22, {1, 2}, {veksg::Transform(), veksg::Transform()}, 8, triad);
    transform.clear();
    EXPECT_TRUE(transform.ids.empty() && transform.transforms.empty());
    EXPECT_EQ(transform.mode, 8);
    EXPECT_EQ(transform.triad, triad);
}

} // namespace
