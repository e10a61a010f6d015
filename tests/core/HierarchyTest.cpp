#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::Hierarchy;
using veksg::HierarchySet;
using List = std::vector<int>;

TEST(Hierarchy, AddChildGrowsToTheParentWithEmptyLists) {
    Hierarchy h;
    h.addChild(5, 9);
    ASSERT_EQ(h.size(), 6);
    for (int p = 0; p < 5; ++p)
        EXPECT_TRUE(h.getValue(p).empty()) << p;
    EXPECT_EQ(h.getValue(5), (List{9}));

    h.addChild(2, 7);
    h.addChild(2, 7);
    h.addChild(2, List{1, 7, 0});
    EXPECT_EQ(h.getValue(2), (List{7, 7, 1, 7, 0}));
    EXPECT_EQ(h.size(), 6);
}

TEST(Hierarchy, RemoveDuplicatesSortsEveryList) {
    Hierarchy h;
    h.addChild(0, List{3, 1, 3, 2});
    h.addChild(1, List{7, 7});
    h.addChild(3, List{-1, 4, -1});
    h.removeDuplicates();
    EXPECT_EQ(h.getValue(0), (List{1, 2, 3}));
    EXPECT_EQ(h.getValue(1), (List{7}));
    EXPECT_TRUE(h.getValue(2).empty());
    EXPECT_EQ(h.getValue(3), (List{-1, 4}));
}

// Short lists and long ones take different sorting paths; every length up to well past the
// switch must come out as a plain sort and unique would leave it.
TEST(Hierarchy, RemoveDuplicatesAtEveryListLength) {
    Hierarchy h;
    std::vector<List> expected;
    for (int length = 0; length <= 70; ++length) {
        List scrambled;
        List ascendingButLast;
        for (int i = 0; i < length; ++i) {
            scrambled.push_back((i * 37 + length) % 23 - 5);
            ascendingButLast.push_back(i);
        }
        if (length > 0) ascendingButLast.push_back(length / 2);
        for (List list : {scrambled, ascendingButLast}) {
            h.insert(list);
            std::sort(list.begin(), list.end());
            list.erase(std::unique(list.begin(), list.end()), list.end());
            expected.push_back(list);
        }
    }
    h.removeDuplicates();
    ASSERT_EQ(h.size(), static_cast<int>(expected.size()));
    for (int p = 0; p < h.size(); ++p)
        EXPECT_EQ(h.getValue(p), expected[static_cast<size_t>(p)]) << p;
}

TEST(Hierarchy, RemoveChildWithAndWithoutErase) {
    Hierarchy h;
    h.addChild(0, List{4, 6, 4, 8});
    h.addChild(1, List{4, 6, 4, 8});
    h.addChild(2, List{1, 2});

    h.removeChild(0, 4, true);
    EXPECT_EQ(h.getValue(0), (List{6, 8}));
    // Without erase the tail keeps what the compaction left there.
    h.removeChild(1, 4, false);
    EXPECT_EQ(h.getValue(1), (List{6, 8, 4, 8}));
    h.removeChild(2, 5, true);
    h.removeChild(2, 5, false);
    EXPECT_EQ(h.getValue(2), (List{1, 2}));
}

TEST(HierarchySet, ChildrenAreOrderedAndUnique) {
    HierarchySet h;
    h.addChild(1, std::set<int>{5, 3});
    h.addChild(1, 3);
    ASSERT_EQ(h.size(), 2);
    EXPECT_TRUE(h.getValue(0).empty());
    EXPECT_EQ(h.getValue(1), (std::set<int>{3, 5}));
    h.removeChild(1, 9);
    EXPECT_EQ(h.getValue(1), (std::set<int>{3, 5}));
    h.removeChild(1, 3);
    EXPECT_EQ(h.getValue(1), (std::set<int>{5}));
}

TEST(Set, OrderedWithoutDuplicatesAndMoveEmptiesTheSource) {
    veksg::Set<int> s;
    s.insert(2);
    s.insert(1);
    s.insert(2);
    EXPECT_EQ(s.size(), 2);
    EXPECT_EQ(List(s.begin(), s.end()), (List{1, 2}));

    veksg::Set<int> copy(s);
    copy.insert(0);
    EXPECT_EQ(s.size(), 2);

    veksg::Set<int> target;
    target.insert(9);
    target = std::move(copy);
    EXPECT_EQ(List(target.begin(), target.end()), (List{0, 1, 2}));
    EXPECT_TRUE(copy.empty()); // NOLINT(bugprone-use-after-move)

    s.clear();
    EXPECT_TRUE(s.empty());
}

TEST(PairT, DefaultsAreZero) {
    const veksg::PairT<veksg::EntityType, int> entity;
    EXPECT_EQ(entity.first, 0);
    EXPECT_EQ(entity.second, 0);
    const veksg::PairT<unsigned char, int> small;
    EXPECT_EQ(small.first, 0);
    EXPECT_EQ(small.second, 0);
    const veksg::PairT<vekmath::Tuple<float, 16>, int> placed;
    EXPECT_EQ(placed.first, (vekmath::Tuple<float, 16>()));
    EXPECT_EQ(placed.second, 0);

    const veksg::PairT<veksg::EntityType, int> face(veksg::ENTITY_FACE, 12);
    veksg::Container<int, veksg::PairT<veksg::EntityType, int>> refs;
    refs.insert(3, face, {});
    EXPECT_EQ(refs.getValue(3).first, veksg::ENTITY_FACE);
    EXPECT_EQ(refs.getValue(3).second, 12);
    EXPECT_EQ(refs.getValue(0).second, 0);
}

} // namespace
