#include <gtest/gtest.h>

#include "common/Checks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::resizeAsking;
using testing_support::valuesOf;
using veksg::PrimitiveInfo;
using veksg::SCSceneRes;

// The B link follows table A and the C links wait for table B; several rows would come out
// differently if every link followed its own primitive table.
TEST(SCSceneRes, PrimitiveLinksFollowTheirDocumentedTables) {
    const struct {
        int a, b, c, aLinks, bLink1, bLink2, cLinks;
    } cases[] = {{3, 0, 0, 3, 0, 0, 0},
                 {2, 5, 0, 2, 2, 5, 0},
                 {0, 0, 4, 0, 0, 0, 0},
                 {0, 2, 4, 0, 0, 2, 4},
                 {4, 1, 2, 4, 4, 1, 2}};
    for (const auto& k : cases) {
        SCOPED_TRACE(testing::Message() << "A=" << k.a << " B=" << k.b << " C=" << k.c);
        SCSceneRes res;
        res.primitivesA.resizeToFitKey(k.a - 1, PrimitiveInfo());
        res.primitivesB.resizeToFitKey(k.b - 1, PrimitiveInfo());
        res.primitivesC.resizeToFitKey(k.c - 1, PrimitiveInfo());
        // A resizer that would answer is never asked.
        EXPECT_TRUE(resizeAsking(res, {{10, 7}, {13, 7}}).empty());
        const std::pair<const veksg::Container<int, int>*, int> expected[] = {
            {&res.primALinks1, k.aLinks}, {&res.primALinks2, k.aLinks},
            {&res.primALinks3, k.aLinks}, {&res.primBLinks1, k.bLink1},
            {&res.primBLinks2, k.bLink2}, {&res.primCLinks1, k.cLinks},
            {&res.primCLinks2, k.cLinks}};
        for (const auto& [links, size] : expected)
            EXPECT_EQ(valuesOf(*links), std::vector<int>(size, -1));
    }
}

TEST(SCSceneRes, OtherParallelTablesGrowWithoutShrinkingAndCleanupKeepsThem) {
    SCSceneRes res;
    res.vertexInfos.resizeToFitKey(1, nullptr);
    res.indexInfos.resizeToFitKey(2, nullptr);
    res.fonts.resizeToFitKey(2, veksg::Font());
    res.fontLists.insert(std::vector<int>{4, 4});
    res.fontLists.insert(std::vector<int>{});
    res.texts.resizeToFitKey(3, veksg::Text());
    res.textLinksB.insert(6, 9, -1);
    resizeAsking(res);
    res.cleanup();

    EXPECT_EQ(res.vertexLists.size(), 2);
    EXPECT_EQ(valuesOf(res.indexLinks), std::vector<int>(3, -1));
    for (const auto* lists : {&res.indexLists1, &res.indexLists2, &res.indexLists3})
        EXPECT_EQ(valuesOf(*lists), std::vector<std::vector<int>>(3));
    EXPECT_EQ(valuesOf(res.fontLists), (std::vector<std::vector<int>>{{4, 4}, {}, {}}));
    EXPECT_EQ(res.textLinksA.size(), 4);
    EXPECT_EQ(res.textLinksB.size(), 7);
    EXPECT_EQ(res.textLinksB.getValue(6), 9);
    EXPECT_EQ(res.primitivesA.size(), 0);
}

} // namespace
