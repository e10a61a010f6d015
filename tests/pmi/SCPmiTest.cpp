#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::RecordingResizer;
using veksg::SCPmi;

struct Grown {
    const char* name;
    short keySpace; // 0: never grown by resize
    veksg::Hierarchy* relation;
    veksg::Container<int, int>* map;
};

// Every entity-keyed and annotation-keyed relation and map with the key space that sizes it.
std::vector<Grown> tablesOf(SCPmi& p) {
    return {
        {"relation1", 10, &p.relation1, nullptr},
        {"relation2", 10, &p.relation2, nullptr},
        {"relation3", 10, &p.relation3, nullptr},
        {"relation4", 16, &p.relation4, nullptr},
        {"relation5", 16, &p.relation5, nullptr},
        {"relation6", 16, &p.relation6, nullptr},
        {"relation7", 0, &p.relation7, nullptr},
        {"relation8", 17, &p.relation8, nullptr},
        {"relation9", 17, &p.relation9, nullptr},
        {"relation10", 17, &p.relation10, nullptr},
        {"relation11", 16, &p.relation11, nullptr},
        {"relation12", 16, &p.relation12, nullptr},
        {"relation13", 16, &p.relation13, nullptr},
        {"relation14", 0, &p.relation14, nullptr},
        {"map1", 0, nullptr, &p.map1},
        {"map2", 16, nullptr, &p.map2},
        {"map3", 0, nullptr, &p.map3},
        {"map4", 17, nullptr, &p.map4},
        {"map5", 17, nullptr, &p.map5},
        {"map6", 0, nullptr, &p.map6},
    };
}

int sizeOf(const Grown& t) {
    return t.relation ? t.relation->size() : t.map->size();
}

TEST(SCPmi, EachKeySpaceGrowsOnlyItsOwnGroup) {
    const short spaces[] = {10, 16, 17};
    for (short asked : spaces) {
        SCPmi pmi;
        auto resizer = std::make_shared<RecordingResizer>(std::map<short, int>{{asked, 4}});
        pmi.resize(resizer);
        EXPECT_EQ(resizer->asked, (std::vector<short>{10, 16, 17}));
        EXPECT_EQ(resizer.use_count(), 1);
        for (const Grown& t : tablesOf(pmi)) {
            EXPECT_EQ(sizeOf(t), t.keySpace == asked ? 5 : 0) << t.name << " for " << asked;
            if (t.map) {
                for (int v : *t.map)
                    EXPECT_EQ(v, -1) << t.name;
            } else {
                for (const auto& list : *t.relation)
                    EXPECT_TRUE(list.empty()) << t.name;
            }
        }
        EXPECT_EQ(pmi.type(), 3);
    }
}

TEST(SCPmi, NegativeOrSmallerAnswersShrinkNothing) {
    SCPmi pmi;
    pmi.relation1.addChild(6, 2);
    pmi.map2.insert(3, 9, -1);
    pmi.resize(
        std::make_shared<RecordingResizer>(std::map<short, int>{{10, 1}, {16, -5}, {17, -1}}));
    EXPECT_EQ(pmi.relation1.size(), 7);
    EXPECT_EQ(pmi.relation1.getValue(6), (std::vector<int>{2}));
    EXPECT_EQ(pmi.map2.size(), 4);
    EXPECT_EQ(pmi.map2.getValue(3), 9);
    EXPECT_EQ(pmi.map4.size(), 0);
}

TEST(SCPmi, CleanupEmptiesEverythingAndCopiesShare) {
    SCPmi pmi;
    std::shared_ptr<veksg::PMI> annotation = std::make_shared<veksg::Section>();
    auto owner = std::make_shared<int>(7);
    pmi.pmis.insert(annotation);
    pmi.pmiList1.assign({1, 2});
    pmi.views.insert(std::make_shared<veksg::View>());
    pmi.pmiBoxes.insert(veksg::BBox());
    for (const Grown& t : tablesOf(pmi)) {
        if (t.relation)
            t.relation->addChild(2, 1);
        else
            t.map->insert(2, 1, -1);
    }
    pmi.idSet1.insert(4);
    pmi.idSet2.insert(5);
    pmi.pmiObject = owner;

    SCPmi copy(pmi);
    EXPECT_EQ(copy.pmis.getValue(0).get(), annotation.get());
    EXPECT_EQ(owner.use_count(), 3);

    pmi.cleanup();
    EXPECT_EQ(pmi.type(), 3);
    EXPECT_EQ(pmi.pmis.size() + pmi.views.size() + pmi.pmiBoxes.size(), 0);
    EXPECT_TRUE(pmi.pmiList1.empty());
    EXPECT_TRUE(pmi.idSet1.empty() && pmi.idSet2.empty());
    EXPECT_EQ(pmi.pmiObject, nullptr);
    for (const Grown& t : tablesOf(pmi))
        EXPECT_EQ(sizeOf(t), 0) << t.name;
    // The copy keeps its own tables and its share of everything.
    EXPECT_EQ(copy.relation7.size(), 3);
    EXPECT_EQ(annotation.use_count(), 2);
    EXPECT_EQ(owner.use_count(), 2);
}

} // namespace
