#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::Point3;
using veksg::SCDraftAngleAnalysis;
using veksg::SCThicknessAnalysis;

const Point3 somewhere(1.0f, 2.0f, 3.0f);

// The int fields of the thickness analysis with their defaults; which survive cleanup.
struct IntField {
    int SCThicknessAnalysis::*field;
    int initial;
    bool kept;
};
const IntField thicknessInts[] = {
    {&SCThicknessAnalysis::index0, -1, false},      {&SCThicknessAnalysis::index1, -1, false},
    {&SCThicknessAnalysis::index2, -1, false},      {&SCThicknessAnalysis::value0, 0, false},
    {&SCThicknessAnalysis::value1, 0, false},       {&SCThicknessAnalysis::value2, 0, false},
    {&SCThicknessAnalysis::value3, 0, false},       {&SCThicknessAnalysis::value4, 0, false},
    {&SCThicknessAnalysis::settingIndex, -1, true}, {&SCThicknessAnalysis::setting0, 0, true},
    {&SCThicknessAnalysis::setting1, 0, true},
};

TEST(ThicknessAnalysis, CleanupDropsResultsAndKeepsSettings) {
    SCThicknessAnalysis analysis;
    for (const IntField& f : thicknessInts) {
        EXPECT_EQ(analysis.*f.field, f.initial);
        analysis.*f.field = 42;
    }
    analysis.computed = analysis.settingFlag = true;
    analysis.options = 7;
    analysis.point2 = somewhere;
    const auto result = std::make_shared<int>(1);
    analysis.result0 = analysis.result1 = analysis.result2 = result;
    analysis.thicknesses.assign(100, 0.5f);
    analysis.ids.assign(100, 9ul);

    analysis.cleanup();
    for (const IntField& f : thicknessInts)
        EXPECT_EQ(analysis.*f.field, f.kept ? 42 : f.initial);
    EXPECT_FALSE(analysis.computed);
    EXPECT_EQ(result.use_count(), 1) << "all three results released";
    EXPECT_TRUE(analysis.thicknesses.empty() && analysis.ids.empty());
    EXPECT_EQ(analysis.options, 7);
    EXPECT_EQ(analysis.point2, somewhere);
    EXPECT_TRUE(analysis.settingFlag);
}

// Everything a run leaves, and the settings; clearAll must reset only the run's results.
SCDraftAngleAnalysis filledDraft() {
    SCDraftAngleAnalysis d;
    d.anglesA = d.anglesB = std::vector<float>(8, 1.0f);
    d.rangesA.assign(8, {-5.0f, 5.0f, 0, 3});
    d.rangesB.assign(8, {});
    d.groups.assign(8, {1, 2});
    d.pointGroups.assign(8, {somewhere});
    d.pointsA = d.pointsB = std::vector<Point3>(8, somewhere);
    d.codes.assign(8, 4);
    d.objects.assign(8, std::make_shared<int>(0));
    d.matrices.assign(8, vekmath::MatrixUtils::createIdentity());
    d.shared0 = std::make_shared<int>(1);
    d.settingIndex = 3;
    d.point1 = somewhere;
    d.settingFlag = d.computed = true;
    d.settingFlag2 = false;
    d.currentIndex = 6;
    d.minAngle = -10.0f;
    return d;
}

TEST(DraftAngleAnalysis, ClearAllResetsResultsInOrderKeepingCapacityAndSettings) {
    SCDraftAngleAnalysis d = filledDraft();
    d.cleanup();
    EXPECT_TRUE(d.computed && d.currentIndex == 6 && d.anglesA.size() == 8u)
        << "cleanup is the base no-op";

    const std::weak_ptr<void> object = d.objects.front();
    // Releasing the objects shows how far the reset has come at that step.
    std::vector<bool> seen;
    d.objects.push_back(std::shared_ptr<void>(nullptr, [&d, &seen](void*) {
        seen = {d.anglesA.empty(), d.computed, d.rangesB.empty(), d.currentIndex == -1};
    }));
    const int* codes = d.codes.data();

    d.clearAll();
    EXPECT_EQ(seen, (std::vector<bool>{true, false, false, false}));
    EXPECT_TRUE(d.anglesA.empty() && d.rangesB.empty() && d.groups.empty() && d.pointsA.empty() &&
                d.codes.empty() && d.objects.empty() && d.matrices.empty() && d.pointsB.empty());
    EXPECT_FALSE(d.computed);
    EXPECT_EQ(d.currentIndex, -1);
    EXPECT_TRUE(object.expired());
    d.codes.push_back(1);
    EXPECT_EQ(d.codes.data(), codes) << "capacity kept";

    const SCDraftAngleAnalysis ref = filledDraft();
    EXPECT_TRUE(d.anglesB == ref.anglesB && d.rangesA.size() == 8u &&
                d.pointGroups == ref.pointGroups && d.shared0);
    EXPECT_TRUE(d.settingIndex == 3 && d.point1 == somewhere && d.settingFlag && !d.settingFlag2);
    EXPECT_EQ(d.minAngle, -10.0f);
}

} // namespace
