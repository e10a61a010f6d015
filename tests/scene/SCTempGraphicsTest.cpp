#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::SCTempGraphics;

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
    EXPECT_EQ(graphics.texts3d.size() + graphics.leaders.size() + graphics.tempShared1.size() +
                  graphics.tempShared2.size() + graphics.measures.size() +
                  graphics.tempShared3.size(),
              0);
    EXPECT_EQ(released, (std::vector<std::string>{
                            "texts3d null", "leaders null", "tempShared1 null", "tempShared2 null",
                            "measures null", "tempShared3 null after values"}));
}

} // namespace
