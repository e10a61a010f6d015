#include <map>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "common/AllocationCounter.h"
#include "common/ComponentChecks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::RecordingResizer;
using veksg::SCSceneRT;
using Answers = std::map<short, int>;
using Bits = std::vector<bool>;

std::shared_ptr<RecordingResizer> resize(SCSceneRT& scene, Answers answers) {
    auto resizer = std::make_shared<RecordingResizer>(std::move(answers));
    scene.resize(resizer);
    EXPECT_EQ(resizer.use_count(), 1);
    return resizer;
}

TEST(SCSceneRT, TypeCodeForDefaultsCopiesAndFactory) {
    testing_support::expectTypeCode<SCSceneRT>(1);
}

// Distinct answers per key space, so that a set sized from the wrong one shows.
TEST(SCSceneRT, ResizeSizesEachSetFromItsKeySpaceWithItsStartValue) {
    SCSceneRT scene;
    const auto resizer =
        resize(scene, {{10, 4}, {11, 3}, {12, 2}, {13, 5}, {14, 1}, {15, 0}, {16, 6}, {6, 8}});

    EXPECT_EQ(resizer->asked, (std::vector<short>{10, 11, 12, 14, 13, 15, 16}));
    const Bits expected[] = {Bits(5, true), Bits(7, false), Bits(4, true), Bits(3, false),
                             Bits(1, true), Bits(6, true),  Bits(2, true), Bits()};
    for (int set = 0; set < 8; ++set)
        EXPECT_EQ(scene.visibility.sets[set], expected[set]) << "set " << set;

    EXPECT_EQ(std::vector<float>(scene.nodeValues.begin(), scene.nodeValues.end()),
              std::vector<float>(5, 0.0f));
    for (const auto* lists :
         {&scene.polylines.lists, &scene.meshes.lists, &scene.vertices.lists, &scene.texts.lists}) {
        EXPECT_EQ(lists->size(), 5);
        EXPECT_TRUE(lists->getValue(4).empty());
    }
    EXPECT_EQ(scene.meshes.instances.size(), 0);
    EXPECT_EQ(scene.nodeLists.size(), 0);
}

TEST(SCSceneRT, KeySpaceSixIsAskedOnlyWhenElevenIsNegative) {
    struct Case {
        int eleven, six;
        bool asksSix;
        Bits set7;
    };
    const Bits untouched{false, true};
    const Case cases[] = {{3, 2, false, untouched},
                          {0, 2, false, untouched},
                          {-1, 2, true, Bits{false, true, true}},
                          {-7, 0, true, Bits{false}},
                          {-1, -1, true, untouched}};
    for (const Case& k : cases) {
        SCOPED_TRACE(testing::Message() << "11 answers " << k.eleven << ", 6 answers " << k.six);
        SCSceneRT scene;
        scene.visibility.sets[7] = untouched;
        const auto resizer = resize(scene, {{11, k.eleven}, {6, k.six}});
        std::vector<short> asked{10, 11, 12, 14, 13, 15, 16};
        if (k.asksSix) asked.insert(asked.begin() + 2, 6);
        EXPECT_EQ(resizer->asked, asked);
        EXPECT_EQ(scene.visibility.sets[7], k.set7);
    }
}

TEST(SCSceneRT, SetsFollowTheRangeExactlyWhileTablesOnlyGrow) {
    SCSceneRT scene;
    resize(scene, {{10, 7}, {12, 9}});
    scene.visibility.sets[3][1] = true;
    scene.visibility.sets[0][1] = false;
    scene.nodeValues.setValue(6, 2.5f);

    resize(scene, {{10, 1}, {12, 2}});
    EXPECT_EQ(scene.visibility.sets[3], (Bits{false, true, false}));
    EXPECT_EQ(scene.visibility.sets[0], (Bits{true, false}));
    EXPECT_EQ(scene.nodeValues.size(), 8);
    EXPECT_EQ(scene.nodeValues.getValue(6), 2.5f);
    EXPECT_EQ(scene.meshes.lists.size(), 8);

    // Grown again, the kept bits stay and the new ones take the set's start value.
    resize(scene, {{10, 3}, {12, 4}});
    EXPECT_EQ(scene.visibility.sets[3], (Bits{false, true, false, false, false}));
    EXPECT_EQ(scene.visibility.sets[0], (Bits{true, false, true, true}));

    // Negative answers leave every set as it is rather than emptying it.
    resize(scene, {{10, -1}, {12, -2}});
    EXPECT_EQ(scene.visibility.sets[3].size(), 5u);
    EXPECT_EQ(scene.visibility.sets[0].size(), 4u);
}

class Always : public veksg::IPairFunctor {
public:
    bool apply(const int& /*key*/) const override { return true; }
};

TEST(SCSceneRT, CleanupDropsTheTransientStateAndKeepsTheBatches) {
    if (!testing_support::CountAllocations::active())
        GTEST_SKIP() << "operator new is replaced by a tool; allocations cannot be counted";
    SCSceneRT scene;
    resize(scene, {{10, 2}, {11, 2}, {12, 2}, {13, 2}, {14, 2}, {15, 2}, {16, 2}});
    scene.meshes.instances.insert({});
    scene.polylines.refs4.insert(4);
    scene.vertices.flags.insert(1);
    scene.texts.dirty = true;
    scene.visibility.functors[2].push_front(std::make_shared<Always>());
    scene.selection.selection[4] = {1, 2};
    scene.nodeLists.insert({3, 4});
    scene.setA.insert(1);
    scene.setB.insert(2);
    scene.appearance.appearance[1] = {5};
    scene.transientMaterials.refs3.insert(6);
    scene.transientMaterials.count = 2;
    const SCSceneRT copy = scene;
    const auto nodeValues = &*scene.nodeValues.begin();

    scene.cleanup();
    EXPECT_EQ(scene.type(), 1);
    for (const auto& set : scene.visibility.sets)
        EXPECT_TRUE(set.empty());
    EXPECT_TRUE(scene.visibility.functors[2].functors.empty());
    EXPECT_TRUE(scene.selection.selection[4].empty());
    EXPECT_EQ(scene.nodeLists.size(), 0);
    EXPECT_EQ(scene.nodeValues.size(), 0);
    EXPECT_TRUE(scene.setA.empty() && scene.setB.empty());
    EXPECT_TRUE(scene.appearance.appearance[1].empty());
    EXPECT_EQ(scene.transientMaterials.refs3.size(), 0);
    EXPECT_EQ(scene.transientMaterials.count, 0);

    EXPECT_EQ(scene.meshes.instances.size(), 1);
    EXPECT_EQ(scene.meshes.lists.size(), 3);
    EXPECT_EQ(scene.polylines.refs4.getValue(0), 4);
    EXPECT_EQ(scene.vertices.flags.size(), 1);
    EXPECT_TRUE(scene.texts.dirty);

    // The copy made before is its own.
    EXPECT_EQ(copy.selection.selection[4], (std::vector<int>{1, 2}));
    EXPECT_EQ(copy.visibility.sets[6].size(), 3u);
    EXPECT_EQ(copy.setA.size(), 1);

    // Everything emptied kept its storage.
    const testing_support::CountAllocations counting;
    scene.nodeValues.resizeToFitKey(2, 0.0f);
    scene.transientMaterials.refs3.resizeToFitKey(0, 0);
    scene.visibility.sets[6].resize(3);
    scene.selection.selection[4].resize(2);
    scene.appearance.appearance[1].resize(1);
    EXPECT_EQ(counting.allocations(), 0u);
    EXPECT_EQ(&*scene.nodeValues.begin(), nodeValues);
}

} // namespace
