#include <gtest/gtest.h>

#include "common/Checks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::resizeAsking;
using veksg::SCSceneRT;
using Bits = std::vector<bool>;

const std::vector<short> queryOrder = {10, 11, 12, 14, 13, 15, 16};

// Distinct answers per key space, so that a set sized from the wrong one shows.
TEST(SCSceneRT, ResizeSizesEachSetFromItsKeySpaceWithItsStartValue) {
    SCSceneRT scene;
    EXPECT_EQ(resizeAsking(scene,
                           {{10, 4}, {11, 3}, {12, 2}, {13, 5}, {14, 1}, {15, 0}, {16, 6}, {6, 8}}),
              queryOrder);
    const Bits expected[] = {Bits(5, true), Bits(7, false), Bits(4, true), Bits(3, false),
                             Bits(1, true), Bits(6, true),  Bits(2, true), Bits()};
    for (int set = 0; set < 8; ++set)
        EXPECT_EQ(scene.visibility.sets[set], expected[set]) << "set " << set;

    EXPECT_EQ(std::vector<float>(scene.nodeValues.begin(), scene.nodeValues.end()),
              std::vector<float>(5, 0.0f));
    for (const auto* lists :
         {&scene.polylines.lists, &scene.meshes.lists, &scene.vertices.lists, &scene.texts.lists})
        EXPECT_EQ(lists->size(), 5);
    EXPECT_EQ(scene.meshes.instances.size() + scene.nodeLists.size(), 0);
}

TEST(SCSceneRT, KeySpaceSixIsAskedOnlyWhenElevenIsNegative) {
    const struct {
        int eleven, six;
        bool asksSix;
        Bits set7;
    } cases[] = {{3, 2, false, {false, true}},
                 {0, 2, false, {false, true}},
                 {-1, 2, true, {false, true, true}},
                 {-7, 0, true, {false}},
                 {-1, -1, true, {false, true}}};
    for (const auto& k : cases) {
        SCOPED_TRACE(testing::Message() << "11 answers " << k.eleven << ", 6 answers " << k.six);
        SCSceneRT scene;
        scene.visibility.sets[7] = {false, true};
        auto asked = queryOrder;
        if (k.asksSix) asked.insert(asked.begin() + 2, 6);
        EXPECT_EQ(resizeAsking(scene, {{11, k.eleven}, {6, k.six}}), asked);
        EXPECT_EQ(scene.visibility.sets[7], k.set7);
    }
}

TEST(SCSceneRT, SetsFollowTheRangeExactlyWhileTablesOnlyGrow) {
    SCSceneRT scene;
    resizeAsking(scene, {{10, 7}, {12, 9}});
    scene.visibility.sets[3][1] = true;
    scene.visibility.sets[0][1] = false;
    scene.nodeValues.setValue(6, 2.5f);

    resizeAsking(scene, {{10, 1}, {12, 2}});
    EXPECT_EQ(scene.visibility.sets[3], (Bits{false, true, false}));
    EXPECT_EQ(scene.visibility.sets[0], (Bits{true, false}));
    EXPECT_EQ(scene.nodeValues.getValue(6), 2.5f);
    EXPECT_EQ(scene.meshes.lists.size(), 8);

    // Grown again, the kept bits stay and the new ones take the set's start value; negative
    // answers leave every set as it is rather than emptying it.
    resizeAsking(scene, {{10, 3}, {12, 4}});
    resizeAsking(scene, {{10, -1}, {12, -2}});
    EXPECT_EQ(scene.visibility.sets[3], (Bits{false, true, false, false, false}));
    EXPECT_EQ(scene.visibility.sets[0], (Bits{true, false, true, true}));
}

// One entry in each group that cleanup empties, each group a step of its own.
TEST(SCSceneRT, CleanupEmptiesTheTransientStateAndSparesTheBatches) {
    SCSceneRT scene;
    resizeAsking(scene, {{10, 2}, {11, 2}});
    scene.meshes.instances.insert({});
    scene.texts.dirty = true;
    scene.visibility.sets[7].resize(3); // a set that key space 11 left unsized
    scene.visibility.functors[3].push_front(std::make_shared<testing_support::AlwaysTrue>());
    scene.selection.selection[10] = {1, 2};
    scene.appearance.appearance[3] = {5, 6};
    scene.transientMaterials.refs2.insert(6);
    scene.transientMaterials.count = 2;
    scene.nodeLists.insert({3, 4});
    scene.setA.insert(1);
    scene.setB.insert(2);

    scene.cleanup();
    EXPECT_TRUE(scene.visibility.functors[3].functors.empty());
    for (const auto& set : scene.visibility.sets)
        EXPECT_TRUE(set.empty());
    EXPECT_TRUE(scene.selection.selection[10].empty() && scene.appearance.appearance[3].empty());
    EXPECT_EQ(scene.transientMaterials.refs2.size() + scene.transientMaterials.count, 0);
    EXPECT_TRUE(scene.setA.empty() && scene.setB.empty());
    EXPECT_EQ(scene.nodeLists.size() + scene.nodeValues.size(), 0);
    EXPECT_EQ(scene.meshes.instances.size(), 1);
    EXPECT_EQ(scene.meshes.lists.size(), 3);
    EXPECT_TRUE(scene.texts.dirty);
}

} // namespace
