#include <cstdint>
#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using Matrix = vekmath::Tuple<float, 16>;
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

std::uint32_t bits(float value) {
    std::uint32_t pattern = 0;
    std::memcpy(&pattern, &value, sizeof pattern);
    return pattern;
}

void expectPresets(const SCView& view) {
    ASSERT_EQ(view.orientations.size(), 7);
    for (int key = 0; key < 7; ++key)
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(bits(view.orientations.getValue(key)[i]), presetBits[key][i])
                << "key " << key << ", m" << i;
}

TEST(SCView, StartsWithTheSevenPresetsBitForBit) {
    const SCView view;
    EXPECT_EQ(view.type(), veksg::Schema::VIEW);
    EXPECT_EQ(view.type(), 10);
    expectPresets(view);
    EXPECT_EQ(view.orientations.getValue(2), vekmath::MatrixUtils::createIdentity());
    EXPECT_EQ(view.currentView, 0);
    EXPECT_EQ(view.previousView, -1);
    EXPECT_EQ(view.viewMode, 1);
    EXPECT_EQ(view.viewObject, nullptr);
}

TEST(SCView, CleanupReleasesOnlyTheViewObject) {
    SCView view;
    view.cleanup();
    expectPresets(view);
    EXPECT_EQ(view.viewObject, nullptr);

    const auto consumer = std::make_shared<int>(3);
    view.viewObject = consumer;
    view.currentView = 4;
    view.previousView = 2;
    view.viewMode = 0;
    view.orientations.insert(Matrix());
    view.cleanup();
    EXPECT_EQ(view.viewObject, nullptr);
    EXPECT_EQ(consumer.use_count(), 1);
    EXPECT_EQ(view.orientations.size(), 8);
    EXPECT_EQ(view.currentView, 4);
    EXPECT_EQ(view.previousView, 2);
    EXPECT_EQ(view.viewMode, 0);
}

TEST(SCView, CopiesShareTheViewObjectAndOwnTheirPresets) {
    const auto consumer = std::make_shared<int>(3);
    SCView source;
    source.viewObject = consumer;
    source.currentView = 5;
    source.previousView = 1;
    source.viewMode = 2;

    SCView copy(source);
    SCView assigned;
    assigned.orientations.insert(Matrix());
    assigned = source;
    EXPECT_EQ(consumer.use_count(), 4);
    for (SCView* view : {&copy, &assigned}) {
        EXPECT_EQ(view->type(), 10);
        EXPECT_EQ(view->viewObject, consumer);
        EXPECT_EQ(view->currentView, 5);
        EXPECT_EQ(view->previousView, 1);
        EXPECT_EQ(view->viewMode, 2);
        view->orientations.setValue(1, Matrix());
    }
    expectPresets(source);

    const SCView& self = source;
    source = self;
    expectPresets(source);
    EXPECT_EQ(consumer.use_count(), 4);
}

TEST(SCView, ResizeLeavesThePresetsAlone) {
    SCView view;
    auto resizer = std::make_shared<testing_support::RecordingResizer>(
        std::map<short, int>{{10, 20}, {16, 20}, {17, 20}});
    view.resize(resizer);
    EXPECT_TRUE(resizer->asked.empty());
    EXPECT_EQ(resizer.use_count(), 1);
    expectPresets(view);
}

TEST(SCView, FactoryMakesADefaultView) {
    const auto made = veksg::createFactory()->create(veksg::Schema::VIEW);
    const auto view = std::dynamic_pointer_cast<SCView>(made);
    ASSERT_NE(view, nullptr);
    expectPresets(*view);
    EXPECT_EQ(view->currentView, 0);
    EXPECT_EQ(view->previousView, -1);
    EXPECT_EQ(view->viewMode, 1);
    EXPECT_EQ(view->viewObject, nullptr);
}

} // namespace
