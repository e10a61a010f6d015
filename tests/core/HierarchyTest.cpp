#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::Hierarchy;
using List = std::vector<int>;

TEST(Hierarchy, AddChildGrowsToTheParentAndAppendsInOrder) {
    Hierarchy h;
    h.addChild(5, 9);
    h.addChild(2, 7);
    h.addChild(2, 7);
    h.addChild(2, List{1, 7, 0});
    ASSERT_EQ(h.size(), 6);
    EXPECT_EQ(h.getValue(2), (List{7, 7, 1, 7, 0}));
    EXPECT_EQ(h.getValue(5), (List{9}));
    EXPECT_TRUE(h.getValue(4).empty());
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
    // Without erase the tail keeps what the compaction left there.
    h.removeChild(1, 4, false);
    h.removeChild(2, 5, true);
    h.removeChild(2, 5, false);
    EXPECT_EQ(h.getValue(0), (List{6, 8}));
    EXPECT_EQ(h.getValue(1), (List{6, 8, 4, 8}));
    EXPECT_EQ(h.getValue(2), (List{1, 2}));
}

TEST(HierarchySet, AddChildGrowsToTheParent) {
    veksg::HierarchySet h;
    h.addChild(1, std::set<int>{5, 3});
    h.addChild(1, 3);
    h.removeChild(1, 3);
    ASSERT_EQ(h.size(), 2);
    EXPECT_TRUE(h.getValue(0).empty());
    EXPECT_EQ(h.getValue(1), (std::set<int>{5}));
}

TEST(Set, MoveAssignmentReplacesTheTargetAndEmptiesTheSource) {
    veksg::Set<int> s;
    s.insert(2);
    veksg::Set<int> target;
    target.insert(9);
    target = std::move(s);
    EXPECT_EQ(List(target.begin(), target.end()), (List{2}));
    EXPECT_TRUE(s.empty()); // NOLINT(bugprone-use-after-move)
}

} // namespace
