#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/AllocationCounter.h"
#include "common/ComponentChecks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using veksg::SCTempGraphics;

TEST(SCTempGraphics, TypeCodeForDefaultsCopiesAndFactory) {
    testing_support::expectTypeCode<SCTempGraphics>(7);
}

TEST(SCTempGraphics, ResizeOnlyReleasesTheResizer) {
    SCTempGraphics graphics;
    graphics.tempValues.insert(veksg::Point3());
    auto resizer =
        std::make_shared<testing_support::RecordingResizer>(std::map<short, int>{{10, 4}});
    graphics.resize(resizer);
    EXPECT_TRUE(resizer->asked.empty());
    EXPECT_EQ(resizer.use_count(), 1);
    EXPECT_EQ(graphics.tempValues.size(), 1);
}

TEST(SCTempGraphics, CleanupDestroysWhatOnlyItHeldAndSparesTheRest) {
    SCTempGraphics graphics;
    const auto kept = std::make_shared<veksg::Text3D>(L"kept");
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
    const auto host = std::make_shared<std::wstring>(L"host object");
    for (auto* shared : {&graphics.tempShared1, &graphics.tempShared2, &graphics.tempShared3})
        shared->insert(host);

    graphics.cleanup();

    EXPECT_TRUE(dropped.expired());
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_STREQ(kept->name(), L"kept");
    EXPECT_EQ(host.use_count(), 1);
    const int sizes[] = {graphics.texts3d.size(),     graphics.leaders.size(),
                         graphics.tempShared1.size(), graphics.tempShared2.size(),
                         graphics.measures.size(),    graphics.tempValues.size(),
                         graphics.tempShared3.size()};
    for (int size : sizes)
        EXPECT_EQ(size, 0);

    // Every table kept its storage.
    const testing_support::CountAllocations counting;
    graphics.texts3d.resizeToFitKey(2, nullptr);
    graphics.leaders.resizeToFitKey(0, nullptr);
    graphics.tempShared1.resizeToFitKey(0, nullptr);
    graphics.tempShared2.resizeToFitKey(0, nullptr);
    graphics.measures.resizeToFitKey(0, nullptr);
    graphics.tempValues.resizeToFitKey(3, veksg::Point3());
    graphics.tempShared3.resizeToFitKey(0, nullptr);
    EXPECT_EQ(counting.allocations(), 0u);
}

// Each shared entry, when its last holder lets go, notes which table it was in, whether its
// slot was already null, and whether the plain values were already gone.
TEST(SCTempGraphics, CleanupReleasesTableByTableNullingEachEntryFirst) {
    SCTempGraphics graphics;
    graphics.tempValues.insert(veksg::Point3());
    std::vector<std::string> released;
    auto note = [&](const char* table, const auto& slot) {
        return [&graphics, &released, &slot, table](auto* object) {
            released.push_back(std::string(table) + (slot ? " live" : " null") +
                               (graphics.tempValues.size() == 0 ? " after values" : ""));
            delete object;
        };
    };
    // Entries go in first, so that the slots observed later no longer move.
    graphics.texts3d.resizeToFitKey(0, nullptr);
    graphics.leaders.resizeToFitKey(0, nullptr);
    graphics.tempShared1.resizeToFitKey(0, nullptr);
    graphics.tempShared2.resizeToFitKey(0, nullptr);
    graphics.measures.resizeToFitKey(0, nullptr);
    graphics.tempShared3.resizeToFitKey(0, nullptr);
    graphics.texts3d.setValue(
        0, std::shared_ptr<veksg::Text3D>(new veksg::Text3D(L"t"),
                                          note("texts3d", graphics.texts3d.getValue(0))));
    graphics.leaders.setValue(
        0, std::shared_ptr<veksg::Text3DLeader>(new veksg::Text3DLeader(L"l"),
                                                note("leaders", graphics.leaders.getValue(0))));
    graphics.tempShared1.setValue(
        0, std::shared_ptr<int>(new int(1), note("tempShared1", graphics.tempShared1.getValue(0))));
    graphics.tempShared2.setValue(
        0, std::shared_ptr<int>(new int(2), note("tempShared2", graphics.tempShared2.getValue(0))));
    graphics.measures.setValue(
        0, std::shared_ptr<veksg::Measure>(new veksg::Measure(),
                                           note("measures", graphics.measures.getValue(0))));
    graphics.tempShared3.setValue(
        0, std::shared_ptr<int>(new int(3), note("tempShared3", graphics.tempShared3.getValue(0))));

    graphics.cleanup();

    EXPECT_EQ(released, (std::vector<std::string>{
                            "texts3d null", "leaders null", "tempShared1 null", "tempShared2 null",
                            "measures null", "tempShared3 null after values"}));
}

} // namespace
