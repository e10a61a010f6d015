#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "common/ComponentChecks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using veksg::PrimitiveInfo;
using veksg::SCSceneRes;

// Resizes with a resizer that would answer, and checks that it was never asked.
void resize(SCSceneRes& res) {
    auto resizer =
        std::make_shared<testing_support::RecordingResizer>(std::map<short, int>{{10, 7}, {13, 7}});
    res.resize(resizer);
    EXPECT_TRUE(resizer->asked.empty());
    EXPECT_EQ(resizer.use_count(), 1);
}

TEST(SCSceneRes, TypeCodeForDefaultsCopiesAndFactory) {
    testing_support::expectTypeCode<SCSceneRes>(13);
}

// The B link follows table A and the C links wait for table B; several rows would come out
// differently if every link followed its own primitive table.
TEST(SCSceneRes, PrimitiveLinksFollowTheirDocumentedTables) {
    struct Case {
        int a, b, c, aLinks, bLink1, bLink2, cLinks;
    };
    const Case cases[] = {{3, 0, 0, 3, 0, 0, 0},
                          {2, 5, 0, 2, 2, 5, 0},
                          {0, 0, 4, 0, 0, 0, 0},
                          {0, 2, 4, 0, 0, 2, 4},
                          {4, 1, 2, 4, 4, 1, 2}};
    for (const Case& k : cases) {
        SCOPED_TRACE(testing::Message() << "A=" << k.a << " B=" << k.b << " C=" << k.c);
        SCSceneRes res;
        res.primitivesA.resizeToFitKey(k.a - 1, PrimitiveInfo());
        res.primitivesB.resizeToFitKey(k.b - 1, PrimitiveInfo());
        res.primitivesC.resizeToFitKey(k.c - 1, PrimitiveInfo());
        resize(res);
        const std::pair<const veksg::Container<int, int>*, int> expected[] = {
            {&res.primALinks1, k.aLinks}, {&res.primALinks2, k.aLinks},
            {&res.primALinks3, k.aLinks}, {&res.primBLinks1, k.bLink1},
            {&res.primBLinks2, k.bLink2}, {&res.primCLinks1, k.cLinks},
            {&res.primCLinks2, k.cLinks}};
        for (const auto& [links, size] : expected)
            EXPECT_EQ(std::vector<int>(links->begin(), links->end()), std::vector<int>(size, -1));
    }
}

TEST(SCSceneRes, OtherParallelTablesGrowWithoutShrinking) {
    SCSceneRes res;
    res.vertexInfos.insert(std::make_shared<veksg::VertexInfo>());
    res.vertexInfos.insert(nullptr);
    res.indexInfos.resizeToFitKey(2, nullptr);
    res.fonts.insert(veksg::Font());
    res.fontLists.insert(std::vector<int>{4, 4});
    res.fontLists.insert(std::vector<int>{});
    res.texts.resizeToFitKey(3, veksg::Text());
    res.textLinksB.insert(6, 9, -1);
    resize(res);

    EXPECT_EQ(res.vertexLists.size(), 2);
    EXPECT_EQ(res.indexLinks.size(), 3);
    EXPECT_EQ(res.indexLinks.getValue(2), -1);
    for (const auto* lists : {&res.indexLists1, &res.indexLists2, &res.indexLists3}) {
        EXPECT_EQ(lists->size(), 3);
        EXPECT_TRUE(lists->getValue(2).empty());
    }
    EXPECT_EQ(res.fontLists.size(), 2);
    EXPECT_EQ(res.fontLists.getValue(0), (std::vector<int>{4, 4}));
    EXPECT_EQ(res.textLinksA.size(), 4);
    EXPECT_EQ(res.textLinksB.size(), 7);
    EXPECT_EQ(res.textLinksB.getValue(6), 9);
    EXPECT_EQ(res.primitivesA.size(), 0);
}

TEST(SCSceneRes, CopiesShareBuffersAndCleanupKeepsEverything) {
    SCSceneRes res;
    auto texture = std::make_shared<veksg::Texture>();
    auto indices = std::make_shared<veksg::IndexInfo>();
    res.textures.insert(texture);
    res.indexInfos.insert(indices);
    const SCSceneRes copy(res);
    SCSceneRes assigned;
    assigned = res;
    EXPECT_EQ(texture.use_count(), 4);
    EXPECT_EQ(assigned.indexInfos.getValue(0), indices);

    res.cleanup();
    EXPECT_EQ(res.textures.size(), 1);
    EXPECT_EQ(texture.use_count(), 4);
}

} // namespace
