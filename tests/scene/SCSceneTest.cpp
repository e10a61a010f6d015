#include <map>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "common/ComponentChecks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::RecordingResizer;
using veksg::SCScene;
using Links = veksg::Container<int, int>;

std::vector<int> valuesOf(const Links& links) {
    return std::vector<int>(links.begin(), links.end());
}

// A scene with something in every table.
SCScene filledScene() {
    SCScene scene;
    auto mesh = std::make_shared<veksg::Mesh>();
    mesh->vn.resize(3);
    mesh->vnc.resize(2);
    mesh->vnt.resize(1);
    scene.meshes.insert(mesh);
    scene.meshMaterials.insert(veksg::MMaterial());
    auto polyline = std::make_shared<veksg::Polyline>();
    polyline->points.resize(2);
    polyline->values = {1, 2};
    scene.polylines.insert(polyline);
    scene.polylineMaterials.insert(veksg::PLMaterial());
    scene.boxes.insert(veksg::BBox());
    scene.transforms.insert(veksg::Transform());
    scene.points.insert(veksg::Point3());
    scene.textures.insert(std::make_shared<veksg::Texture>());
    scene.links6a.insert(1);
    scene.links7.insert(2);
    scene.links8.insert(3);
    scene.links8.insert(4);
    scene.links6b.insert(5);
    scene.fonts.insert(veksg::Font());
    scene.hierarchy.addChild(0, 7);
    scene.texts.insert(veksg::Text());
    scene.textLinksA.insert(6);
    scene.textLinksB.insert(7);
    return scene;
}

TEST(SCScene, TypeCodeForDefaultsCopiesAndFactory) {
    testing_support::expectTypeCode<SCScene>(0);
}

TEST(SCScene, ResizeAsksSixSevenEightAndSizesTheRestFromFontsAndTexts) {
    SCScene scene;
    scene.fonts.resizeToFitKey(2, veksg::Font());
    scene.texts.resizeToFitKey(1, veksg::Text());
    scene.links6b.insert(1, 8, -1);
    scene.links8.insert(6, 42, -1);
    auto resizer =
        std::make_shared<RecordingResizer>(std::map<short, int>{{6, 4}, {7, 1}, {8, 2}, {10, 9}});
    scene.resize(resizer);

    EXPECT_EQ(resizer->asked, (std::vector<short>{6, 7, 8}));
    EXPECT_EQ(resizer.use_count(), 1);
    EXPECT_EQ(valuesOf(scene.links6a), std::vector<int>(5, -1));
    EXPECT_EQ(valuesOf(scene.links6b), (std::vector<int>{-1, 8, -1, -1, -1}));
    EXPECT_EQ(valuesOf(scene.links7), std::vector<int>(2, -1));
    EXPECT_EQ(valuesOf(scene.textLinksA), std::vector<int>(2, -1));
    EXPECT_EQ(valuesOf(scene.textLinksB), std::vector<int>(2, -1));
    // A smaller answer shrinks nothing.
    EXPECT_EQ(scene.links8.size(), 7);
    EXPECT_EQ(scene.links8.getValue(6), 42);
    ASSERT_EQ(scene.hierarchy.size(), 3);
    EXPECT_TRUE(scene.hierarchy.getValue(2).empty());
    EXPECT_EQ(scene.meshes.size(), 0);
}

TEST(SCScene, NegativeAnswersAndNoFontsOrTextsChangeNothing) {
    SCScene scene = filledScene();
    scene.fonts.clear();
    scene.texts.clear();
    scene.resize(std::make_shared<RecordingResizer>(std::map<short, int>{{7, -3}}));
    EXPECT_EQ(valuesOf(scene.links6a), std::vector<int>{1});
    EXPECT_EQ(valuesOf(scene.links7), std::vector<int>{2});
    EXPECT_EQ(valuesOf(scene.links8), (std::vector<int>{3, 4}));
    EXPECT_EQ(valuesOf(scene.links6b), std::vector<int>{5});
    EXPECT_EQ(scene.hierarchy.size(), 1);
    EXPECT_EQ(valuesOf(scene.textLinksA), std::vector<int>{6});
    EXPECT_EQ(valuesOf(scene.textLinksB), std::vector<int>{7});
}

TEST(SCScene, CleanupEmptiesEverythingButLinks8) {
    SCScene scene = filledScene();
    scene.meshes.insert(nullptr);
    scene.cleanup();
    EXPECT_EQ(scene.type(), 0);
    EXPECT_EQ(valuesOf(scene.links8), (std::vector<int>{3, 4}));
    const int sizes[] = {scene.meshes.size(),     scene.meshMaterials.size(),
                         scene.polylines.size(),  scene.polylineMaterials.size(),
                         scene.boxes.size(),      scene.transforms.size(),
                         scene.points.size(),     scene.textures.size(),
                         scene.links6a.size(),    scene.links7.size(),
                         scene.links6b.size(),    scene.fonts.size(),
                         scene.hierarchy.size(),  scene.texts.size(),
                         scene.textLinksA.size(), scene.textLinksB.size()};
    for (int size : sizes)
        EXPECT_EQ(size, 0);
}

// Copies share the geometry, so the scene's cleanup empties it for the copy too, while the
// copy keeps it alive and keeps its own by-value tables.
TEST(SCScene, CleanupEmptiesSharedGeometryButLeavesItAlive) {
    SCScene scene = filledScene();
    const auto mesh = scene.meshes.getValue(0);
    const auto polyline = scene.polylines.getValue(0);
    const auto texture = scene.textures.getValue(0);
    SCScene copy;
    copy = scene;
    EXPECT_EQ(copy.type(), 0);
    EXPECT_EQ(mesh.use_count(), 3);

    scene.cleanup();
    EXPECT_EQ(mesh.use_count(), 2);
    EXPECT_EQ(copy.meshes.getValue(0), mesh);
    EXPECT_TRUE(mesh->vn.empty() && mesh->vnc.empty() && mesh->vnt.empty());
    EXPECT_TRUE(polyline->points.empty() && polyline->values.empty());
    EXPECT_EQ(polyline.use_count(), 2);
    EXPECT_EQ(texture.use_count(), 2);
    EXPECT_EQ(copy.hierarchy.getValue(0), std::vector<int>{7});
}

} // namespace
