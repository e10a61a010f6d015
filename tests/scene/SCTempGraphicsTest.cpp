#include <gtest/gtest.h>

#include "common/AllocationCounter.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using veksg::SCTempGraphics;

TEST(SCTempGraphics, CleanupDestroysWhatOnlyItHeldAndKeepsEveryTablesStorage) {
    SKIP_UNLESS_COUNTING_ALLOCATIONS();
    SCTempGraphics graphics;
    const auto kept = std::make_shared<veksg::Text3D>(L"kept");
    const auto host = std::make_shared<std::wstring>(L"host object");
    std::weak_ptr<veksg::Text3D> dropped = [&] {
        const auto text = std::make_shared<veksg::Text3D>(L"dropped");
        graphics.texts3d.insert(text);
        return text;
    }();
    graphics.texts3d.insert(kept);
    graphics.texts3d.insert(nullptr);
    graphics.leaders.insert(std::make_shared<veksg::Text3DLeader>(L"leader"));
    graphics.measures.insert(std::make_shared<veksg::Measure>());
    graphics.tempValues.resizeToFitKey(3, veksg::Point3(1.0f, 2.0f, 3.0f));
    for (auto* shared : {&graphics.tempShared1, &graphics.tempShared2, &graphics.tempShared3})
        shared->insert(host);
    // Resizing is the base's: nothing asked, nothing grown.
    EXPECT_TRUE(testing_support::resizeAsking(graphics, {{10, 9}}).empty());
    EXPECT_EQ(graphics.tempValues.size(), 4);

    graphics.cleanup();
    EXPECT_TRUE(dropped.expired());
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_STREQ(kept->name(), L"kept");
    EXPECT_EQ(host.use_count(), 1);
    const testing_support::CountAllocations counting;
    const auto refill = [](auto& table, int last) {
        EXPECT_EQ(table.size(), 0);
        table.resizeToFitKey(last, {});
    };
    refill(graphics.texts3d, 2);
    refill(graphics.leaders, 0);
    refill(graphics.tempShared1, 0);
    refill(graphics.tempShared2, 0);
    refill(graphics.measures, 0);
    refill(graphics.tempValues, 3);
    refill(graphics.tempShared3, 0);
    EXPECT_EQ(counting.allocations(), 0u);
}

TEST(SCTempGraphics, CleanupReleasesTableByTableNullingEachEntryFirst) {
    SCTempGraphics graphics;
    graphics.tempValues.insert(veksg::Point3());
    std::vector<std::string> released;
    // One entry per table that notes, as it goes, its table, whether its slot was already
    // null, and whether the plain values were already gone.
    const auto watch = [&](auto& table, const char* name, auto* object) {
        const auto* slot = &table.getValue(table.insert(nullptr));
        table.setValue(0, {object, [&graphics, &released, slot, name](auto* gone) {
                               released.push_back(
                                   std::string(name) + (*slot ? " live" : " null") +
                                   (graphics.tempValues.size() == 0 ? " after values" : ""));
                               delete gone;
                           }});
    };
    watch(graphics.texts3d, "texts3d", new veksg::Text3D(L"t"));
    watch(graphics.leaders, "leaders", new veksg::Text3DLeader(L"l"));
    watch(graphics.tempShared1, "tempShared1", new int(1));
    watch(graphics.tempShared2, "tempShared2", new int(2));
    watch(graphics.measures, "measures", new veksg::Measure());
    watch(graphics.tempShared3, "tempShared3", new int(3));

    graphics.cleanup();
    EXPECT_EQ(released, (std::vector<std::string>{
                            "texts3d null", "leaders null", "tempShared1 null", "tempShared2 null",
                            "measures null", "tempShared3 null after values"}));
}

} // namespace
