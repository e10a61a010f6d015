#include <gtest/gtest.h>

#include "common/Checks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::resizeAsking;
using testing_support::valuesOf;
using veksg::SCSceneTopo;
using Lists = veksg::Container<int, std::vector<int>>;
using Refs = veksg::Container<int, int>;

const std::vector<short> queryOrder = {10, 11, 12, 14, 13, 15};

struct ListTable {
    const char* name;
    short keySpace;
    bool keepsRepeats;
    Lists* table;
};
struct RefTable {
    const char* name;
    short keySpace;
    Refs* table;
};

// Every relation table with the key space that sizes it, written out from the documented
// layout rather than derived from the member types.
std::vector<ListTable> listsOf(SCSceneTopo& t) {
    return {
        {"nodeLists1", 10, true, &t.nodeLists1},    {"nodeLists2", 10, true, &t.nodeLists2},
        {"nodeLists3", 10, false, &t.nodeLists3},   {"nodeLists4", 10, false, &t.nodeLists4},
        {"nodeLists5", 10, false, &t.nodeLists5},   {"nodeLists6", 10, false, &t.nodeLists6},
        {"nodeLists7", 10, false, &t.nodeLists7},   {"nodeLists8", 10, false, &t.nodeLists8},
        {"nodeLists9", 10, false, &t.nodeLists9},   {"nodeLists10", 10, false, &t.nodeLists10},
        {"nodeLists11", 10, false, &t.nodeLists11}, {"faceLists1", 11, true, &t.faceLists1},
        {"faceLists2", 11, false, &t.faceLists2},   {"faceLists3", 11, false, &t.faceLists3},
        {"faceLists4", 11, false, &t.faceLists4},   {"edgeLists1", 12, true, &t.edgeLists1},
        {"edgeLists2", 12, false, &t.edgeLists2},   {"edgeLists3", 12, false, &t.edgeLists3},
        {"edgeLists4", 12, false, &t.edgeLists4},   {"lists15a", 15, false, &t.lists15a},
        {"lists15b", 15, false, &t.lists15b},       {"lists13", 13, true, &t.lists13},
        {"lists14", 14, true, &t.lists14},
    };
}

std::vector<RefTable> refsOf(SCSceneTopo& t) {
    return {
        {"nodeRefs1", 10, &t.nodeRefs1}, {"nodeRefs2", 10, &t.nodeRefs2},
        {"nodeRefs3", 10, &t.nodeRefs3}, {"nodeRefs4", 10, &t.nodeRefs4},
        {"faceRefs1", 11, &t.faceRefs1}, {"faceRefs2", 11, &t.faceRefs2},
        {"edgeRefs1", 12, &t.edgeRefs1}, {"refs15a", 15, &t.refs15a},
        {"refs15b", 15, &t.refs15b},     {"refs13a", 13, &t.refs13a},
        {"refs13b", 13, &t.refs13b},     {"refs14a", 14, &t.refs14a},
        {"refs14b", 14, &t.refs14b},     {"refs14c", 14, &t.refs14c},
    };
}

// Gives every relation list two parents, the second holding a repeated child.
void addRepeatedChildren(SCSceneTopo& topo) {
    for (const ListTable& l : listsOf(topo))
        l.table->insert(1, {5, 7, 5}, {});
}

TEST(SCSceneTopo, EachAnswerGrowsExactlyItsOwnGroup) {
    for (short code : queryOrder) {
        SCOPED_TRACE(code);
        SCSceneTopo topo;
        EXPECT_EQ(resizeAsking(topo, {{code, 3}}), queryOrder);
        const int grown = 4;
        for (const ListTable& l : listsOf(topo))
            EXPECT_EQ(valuesOf(*l.table),
                      std::vector<std::vector<int>>(l.keySpace == code ? grown : 0))
                << l.name;
        for (const RefTable& r : refsOf(topo))
            EXPECT_EQ(valuesOf(*r.table), std::vector<int>(r.keySpace == code ? grown : 0, -1))
                << r.name;
        EXPECT_EQ(valuesOf(topo.nodeFlags), std::vector<char>(code == 10 ? grown : 0, 1));
    }
}

// Answers below the current sizes shrink nothing, yet every hierarchy still drops repeats.
TEST(SCSceneTopo, HierarchiesDropRepeatsEvenWithoutGrowingAndThePlainListsKeepThem) {
    SCSceneTopo topo;
    addRepeatedChildren(topo);
    topo.nodeRefs2.insert(5, 8, -1);
    topo.nodeFlags.insert(char{0});
    resizeAsking(topo, {{10, 1}, {11, 0}, {12, 0}, {13, 0}, {14, 0}, {15, 0}});
    for (const ListTable& l : listsOf(topo)) {
        const auto kept = l.keepsRepeats ? std::vector<int>{5, 7, 5} : std::vector<int>{5, 7};
        EXPECT_EQ(valuesOf(*l.table), (std::vector<std::vector<int>>{{}, kept})) << l.name;
    }
    EXPECT_EQ(valuesOf(topo.nodeRefs2), (std::vector<int>{-1, -1, -1, -1, -1, 8}));
    EXPECT_EQ(topo.nodeRefs1.size(), 2);
    // The existing flag is kept; only the added node starts set.
    EXPECT_EQ(valuesOf(topo.nodeFlags), (std::vector<char>{0, 1}));
}

// A negative answer skips its whole group, dedupe included; cleanup touches nothing at all.
TEST(SCSceneTopo, NegativeAnswersAndCleanupChangeNothing) {
    SCSceneTopo topo;
    addRepeatedChildren(topo);
    for (const RefTable& r : refsOf(topo))
        r.table->insert(4);
    topo.namesByKey[2] = L"fillet";
    EXPECT_EQ(resizeAsking(topo, {{10, -1}, {11, -2}}), queryOrder);
    topo.cleanup();
    for (const ListTable& l : listsOf(topo))
        EXPECT_EQ(l.table->getValue(1), (std::vector<int>{5, 7, 5})) << l.name;
    for (const RefTable& r : refsOf(topo))
        EXPECT_EQ(valuesOf(*r.table), std::vector<int>{4}) << r.name;
    EXPECT_EQ(topo.nodeFlags.size(), 0);
    EXPECT_EQ(topo.namesByKey.at(2), L"fillet");
}

} // namespace
