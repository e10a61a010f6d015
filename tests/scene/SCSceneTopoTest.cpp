#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/ComponentChecks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::RecordingResizer;
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

std::shared_ptr<RecordingResizer> answering(std::map<short, int> answers) {
    return std::make_shared<RecordingResizer>(std::move(answers));
}

// Gives every relation list one parent holding a repeated child.
void addRepeatedChildren(SCSceneTopo& topo) {
    for (const ListTable& l : listsOf(topo))
        l.table->insert(std::vector<int>{5, 7, 5});
}

TEST(SCSceneTopo, DefaultsTypeCodeAndFactory) {
    const SCSceneTopo topo;
    EXPECT_EQ(topo.topoKey, -1);
    EXPECT_EQ(topo.topoCount, 0);
    EXPECT_TRUE(topo.namesByKey.empty());
    testing_support::expectTypeCode<SCSceneTopo>(12);
}

TEST(SCSceneTopo, EachAnswerGrowsExactlyItsOwnGroup) {
    for (short code : queryOrder) {
        SCOPED_TRACE(code);
        SCSceneTopo topo;
        auto resizer = answering({{code, 3}});
        topo.resize(resizer);
        EXPECT_EQ(resizer->asked, queryOrder);
        EXPECT_EQ(resizer.use_count(), 1);

        for (const ListTable& l : listsOf(topo)) {
            EXPECT_EQ(l.table->size(), l.keySpace == code ? 4 : 0) << l.name;
            for (const auto& list : *l.table)
                EXPECT_TRUE(list.empty()) << l.name;
        }
        for (const RefTable& r : refsOf(topo)) {
            EXPECT_EQ(r.table->size(), r.keySpace == code ? 4 : 0) << r.name;
            for (int value : *r.table)
                EXPECT_EQ(value, -1) << r.name;
        }
        EXPECT_EQ(topo.nodeFlags.size(), code == 10 ? 4 : 0);
        for (char flag : topo.nodeFlags)
            EXPECT_EQ(flag, 1);
        const int entities[] = {topo.nodes.size(), topo.faces.size(),  topo.surfaces.size(),
                                topo.edges.size(), topo.curves.size(), topo.vertices.size()};
        for (int size : entities)
            EXPECT_EQ(size, 0);
    }
}

TEST(SCSceneTopo, HierarchiesDropRepeatsAndTheSixPlainListsKeepThem) {
    SCSceneTopo topo;
    addRepeatedChildren(topo);
    topo.resize(answering({{10, 0}, {11, 0}, {12, 0}, {13, 0}, {14, 0}, {15, 0}}));
    for (const ListTable& l : listsOf(topo)) {
        ASSERT_EQ(l.table->size(), 1) << l.name;
        const auto expected = l.keepsRepeats ? std::vector<int>{5, 7, 5} : std::vector<int>{5, 7};
        EXPECT_EQ(l.table->getValue(0), expected) << l.name;
    }
}

TEST(SCSceneTopo, SmallerAnswerShrinksNothingButStillDedupes) {
    SCSceneTopo topo;
    topo.nodeLists3.addChild(0, {5, 5, 7});
    topo.nodeLists3.addChild(4, {2, 1});
    topo.nodeLists1.insert(std::vector<int>{5, 5});
    topo.nodeRefs2.insert(5, 8, -1);
    topo.nodeFlags.insert(char{0});
    topo.resize(answering({{10, 1}}));
    EXPECT_EQ(topo.nodeLists3.size(), 5);
    EXPECT_EQ(topo.nodeLists3.getValue(0), (std::vector<int>{5, 7}));
    EXPECT_EQ(topo.nodeLists3.getValue(4), (std::vector<int>{1, 2}));
    EXPECT_EQ(topo.nodeLists1.getValue(0), (std::vector<int>{5, 5}));
    EXPECT_EQ(topo.nodeRefs2.size(), 6);
    EXPECT_EQ(topo.nodeRefs2.getValue(5), 8);
    EXPECT_EQ(topo.nodeRefs1.size(), 2);
    // The existing flag is kept; only the added node starts set.
    EXPECT_EQ(topo.nodeFlags.getValue(0), 0);
    EXPECT_EQ(topo.nodeFlags.getValue(1), 1);
}

// A negative answer skips its whole group, dedupe included: -1 everywhere changes nothing.
TEST(SCSceneTopo, NegativeAnswersChangeNothing) {
    SCSceneTopo topo;
    addRepeatedChildren(topo);
    for (const RefTable& r : refsOf(topo))
        r.table->insert(4);
    topo.nodeFlags.insert(char{0});
    auto resizer = answering({{10, -1}, {11, -2}});
    topo.resize(resizer);
    EXPECT_EQ(resizer->asked, queryOrder);
    for (const ListTable& l : listsOf(topo))
        EXPECT_EQ(l.table->getValue(0), (std::vector<int>{5, 7, 5})) << l.name;
    for (const RefTable& r : refsOf(topo))
        EXPECT_EQ(std::vector<int>(r.table->begin(), r.table->end()), std::vector<int>{4})
            << r.name;
    EXPECT_EQ(topo.nodeFlags.size(), 1);
}

TEST(SCSceneTopo, CopiesAreDeepAndCleanupKeepsEverything) {
    SCSceneTopo topo;
    topo.nodeLists4.addChild(1, 3);
    topo.namesByKey[2] = L"fillet";
    topo.topoKey = 7;
    SCSceneTopo assigned;
    assigned = topo;
    topo.namesByKey[2] = L"chamfer";
    topo.nodeLists4.addChild(1, 4);
    EXPECT_EQ(assigned.namesByKey.at(2), L"fillet");
    EXPECT_EQ(assigned.nodeLists4.getValue(1), std::vector<int>{3});
    EXPECT_EQ(assigned.topoKey, 7);

    topo.cleanup();
    EXPECT_EQ(topo.nodeLists4.getValue(1), (std::vector<int>{3, 4}));
    EXPECT_EQ(topo.namesByKey.at(2), L"chamfer");
    EXPECT_EQ(topo.topoKey, 7);
}

} // namespace
