#include <gtest/gtest.h>

#include "common/Checks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::resizeAsking;
using testing_support::valuesOf;
using veksg::Point3;

TEST(Features, HoleTakesItsValuesInOrder) {
    const veksg::Hole hole(Point3(1.0f, 2.0f, 3.0f), Point3(0.0f, 0.0f, 1.0f), 6.5f);
    EXPECT_EQ(hole.origin, Point3(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(hole.axis, Point3(0.0f, 0.0f, 1.0f));
    EXPECT_EQ(hole.size, 6.5f);
}

TEST(Features, ResizeGrowsNodeFeaturesToTheLastNode) {
    veksg::SCFeatures features;
    features.holes.insert(veksg::Hole(Point3(), Point3(), 1.0f));
    EXPECT_EQ(resizeAsking(features, {{10, 2}}), std::vector<short>{10});
    EXPECT_EQ(valuesOf(features.nodeFeatures), std::vector<std::vector<int>>(3));
    EXPECT_EQ(features.holes.size(), 1);
}

TEST(Features, SetFilesFollowsOnlyTheReference) {
    veksg::SCComprae compare;
    compare.setFiles(nullptr, L"b");
    EXPECT_STREQ(compare.refFile(), L"");
    EXPECT_STREQ(compare.cmpFile(), L"");
    compare.setFiles(L"a", L"b");
    EXPECT_STREQ(compare.refFile(), L"a");
    EXPECT_STREQ(compare.cmpFile(), L"b");
    compare.setFiles(nullptr, L"c");
    EXPECT_STREQ(compare.refFile(), L"");
    EXPECT_STREQ(compare.cmpFile(), L"");
}

} // namespace
