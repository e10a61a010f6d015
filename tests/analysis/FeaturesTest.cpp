#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::RecordingResizer;
using veksg::Point3;
using veksg::Schema;

TEST(Features, HoleTakesItsValues) {
    const veksg::Hole hole(Point3(1.0f, 2.0f, 3.0f), Point3(0.0f, 0.0f, 1.0f), 6.5f);
    veksg::Container<int, veksg::Hole> holes;
    holes.insert(hole);
    holes.resizeToFitKey(2, veksg::Hole());
    EXPECT_EQ(holes.getValue(0).origin, Point3(1.0f, 2.0f, 3.0f));
    EXPECT_EQ(holes.getValue(0).axis, Point3(0.0f, 0.0f, 1.0f));
    EXPECT_EQ(holes.getValue(0).size, 6.5f);
    EXPECT_EQ(holes.getValue(2).origin, Point3());
}

TEST(Features, ResizeGrowsNodeFeaturesOnlyToTheLastNode) {
    veksg::SCFeatures features;
    features.holes.insert(veksg::Hole(Point3(), Point3(), 1.0f));
    auto resizer = std::make_shared<RecordingResizer>(std::map<short, int>{{10, -1}});
    for (int answer : {-1, -7}) {
        resizer->answers[10] = answer;
        features.resize(resizer);
        EXPECT_EQ(features.nodeFeatures.size(), 0) << answer;
    }
    resizer->answers[10] = 2;
    features.resize(resizer);
    ASSERT_EQ(features.nodeFeatures.size(), 3);
    for (const std::vector<int>& list : features.nodeFeatures)
        EXPECT_TRUE(list.empty());

    features.nodeFeatures.setValue(1, {4, 5});
    resizer->answers[10] = 1;
    features.resize(resizer);
    EXPECT_EQ(features.nodeFeatures.size(), 3) << "never shrinks";
    EXPECT_EQ(features.nodeFeatures.getValue(1), (std::vector<int>{4, 5}));
    EXPECT_EQ(features.holes.size(), 1);
    EXPECT_EQ(resizer->asked, (std::vector<short>(4, 10)));
    EXPECT_EQ(resizer.use_count(), 1);
}

TEST(Features, SetFilesFollowsOnlyTheReference) {
    veksg::SCComprae compare;
    EXPECT_STREQ(compare.refFile(), L"");
    EXPECT_STREQ(compare.cmpFile(), L"");
    compare.setFiles(nullptr, L"b");
    EXPECT_STREQ(compare.refFile(), L"");
    EXPECT_STREQ(compare.cmpFile(), L"");

    compare.setFiles(L"a", L"b");
    const veksg::SCComprae copy(compare);
    EXPECT_STREQ(compare.refFile(), L"a");
    EXPECT_STREQ(compare.cmpFile(), L"b");
    compare.setFiles(nullptr, L"c");
    EXPECT_STREQ(compare.refFile(), L"");
    EXPECT_STREQ(compare.cmpFile(), L"");
    EXPECT_STREQ(copy.refFile(), L"a");
    EXPECT_STREQ(copy.cmpFile(), L"b");
}

} // namespace
