#include <cstdint>
#include <cstring>

#include <gtest/gtest.h>

#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using veksg::SCView;

// The stored bit patterns, m0..m15 per key; 0x80000000 is the negative zero.
const std::uint32_t presetBits[7][16] = {
    {0x3F3504F2, 0x3EB504F4, 0xBF1CC471, 0, 0xBF3504F4, 0x3EB504F2, 0xBF1CC46F, 0, 0, 0x3F5DB3D7,
     0x3F000000, 0, 0, 0, 0, 0x3F800000},
    {0x3F800000, 0x80000000, 0x80000000, 0, 0x80000000, 0, 0xBF800000, 0, 0, 0x3F800000, 0x80000000,
     0, 0, 0, 0, 0x3F800000},
    {0x3F800000, 0x80000000, 0x80000000, 0, 0, 0x3F800000, 0x80000000, 0, 0, 0, 0x3F800000, 0, 0, 0,
     0, 0x3F800000},
    {0x80000000, 0, 0x3F800000, 0, 0x3F800000, 0x80000000, 0, 0, 0, 0x3F800000, 0, 0, 0, 0, 0,
     0x3F800000},
    {0xBF800000, 0, 0, 0, 0, 0x80000000, 0x3F800000, 0, 0, 0x3F800000, 0, 0, 0, 0, 0, 0x3F800000},
    {0xBF800000, 0, 0, 0, 0, 0x3F800000, 0, 0, 0x80000000, 0, 0xBF800000, 0, 0, 0, 0, 0x3F800000},
    {0x80000000, 0, 0xBF800000, 0, 0xBF800000, 0x80000000, 0, 0, 0x80000000, 0x3F800000, 0, 0, 0, 0,
     0, 0x3F800000},
};

void expectPresets(const SCView& view) {
    ASSERT_EQ(view.orientations.size(), 7);
    for (int key = 0; key < 7; ++key)
        for (int i = 0; i < 16; ++i) {
            std::uint32_t bits = 0;
            std::memcpy(&bits, &view.orientations.getValue(key)[i], sizeof bits);
            EXPECT_EQ(bits, presetBits[key][i]) << "key " << key << ", m" << i;
        }
}

TEST(SCView, FactoryMakesTheSevenPresetsBitForBit) {
    const auto view =
        std::dynamic_pointer_cast<SCView>(veksg::createFactory()->create(veksg::Schema::VIEW));
    ASSERT_NE(view, nullptr);
    expectPresets(*view);
}

TEST(SCView, CleanupReleasesOnlyTheViewObjectAndResizeTouchesNothing) {
    SCView view;
    const auto consumer = std::make_shared<int>(3);
    view.viewObject = consumer;
    view.currentView = 4;
    EXPECT_TRUE(testing_support::resizeAsking(view, {{10, 20}, {16, 20}, {17, 20}}).empty());
    view.cleanup();
    EXPECT_EQ(consumer.use_count(), 1);
    expectPresets(view);
    EXPECT_EQ(view.currentView, 4);
}

} // namespace
