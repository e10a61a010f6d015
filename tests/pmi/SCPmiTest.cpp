#include <gtest/gtest.h>

#include "common/Checks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::resizeAsking;
using testing_support::valuesOf;
using veksg::SCPmi;

// The key space that sizes relation1..relation14 and map1..map6; 0 where resize never does.
const short relationSpaces[] = {10, 10, 10, 16, 16, 16, 0, 17, 17, 17, 16, 16, 16, 0};
const short mapSpaces[] = {0, 16, 0, 17, 17, 0};

std::vector<veksg::Hierarchy*> relationsOf(SCPmi& p) {
    return {&p.relation1,  &p.relation2,  &p.relation3,  &p.relation4, &p.relation5,
            &p.relation6,  &p.relation7,  &p.relation8,  &p.relation9, &p.relation10,
            &p.relation11, &p.relation12, &p.relation13, &p.relation14};
}

std::vector<veksg::Container<int, int>*> mapsOf(SCPmi& p) {
    return {&p.map1, &p.map2, &p.map3, &p.map4, &p.map5, &p.map6};
}

TEST(SCPmi, EachKeySpaceGrowsOnlyItsOwnGroup) {
    for (short asked : {10, 16, 17}) {
        SCOPED_TRACE(asked);
        SCPmi pmi;
        EXPECT_EQ(resizeAsking(pmi, {{asked, 4}}), (std::vector<short>{10, 16, 17}));
        const auto relations = relationsOf(pmi);
        for (std::size_t i = 0; i < relations.size(); ++i)
            EXPECT_EQ(valuesOf(*relations[i]),
                      std::vector<std::vector<int>>(relationSpaces[i] == asked ? 5 : 0))
                << "relation" << i + 1;
        const auto maps = mapsOf(pmi);
        for (std::size_t i = 0; i < maps.size(); ++i)
            EXPECT_EQ(valuesOf(*maps[i]), std::vector<int>(mapSpaces[i] == asked ? 5 : 0, -1))
                << "map" << i + 1;
    }
}

TEST(SCPmi, CleanupEmptiesEverything) {
    SCPmi pmi;
    const auto owner = std::make_shared<int>(7);
    pmi.pmis.insert(std::make_shared<veksg::Section>());
    pmi.pmiList1.assign({1, 2});
    pmi.views.insert(std::make_shared<veksg::View>());
    pmi.pmiBoxes.insert(veksg::BBox());
    for (auto* relation : relationsOf(pmi))
        relation->addChild(2, 1);
    for (auto* map : mapsOf(pmi))
        map->insert(2, 1, -1);
    pmi.idSet1.insert(4);
    pmi.idSet2.insert(5);
    pmi.pmiObject = owner;

    pmi.cleanup();
    EXPECT_EQ(pmi.pmis.size() + pmi.views.size() + pmi.pmiBoxes.size(), 0);
    EXPECT_TRUE(pmi.pmiList1.empty() && pmi.idSet1.empty() && pmi.idSet2.empty());
    EXPECT_EQ(owner.use_count(), 1);
    for (auto* relation : relationsOf(pmi))
        EXPECT_EQ(relation->size(), 0);
    for (auto* map : mapsOf(pmi))
        EXPECT_EQ(map->size(), 0);
}

} // namespace
