#include <gtest/gtest.h>

#include "common/Checks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::resizeAsking;
using testing_support::valuesOf;
using veksg::SCScene;
using Ints = std::vector<int>;

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
    for (auto* links :
         {&scene.links6a, &scene.links7, &scene.links6b, &scene.textLinksA, &scene.textLinksB})
        links->insert(5);
    scene.links8.resizeToFitKey(1, 3);
    scene.fonts.insert(veksg::Font());
    scene.hierarchy.addChild(0, 7);
    scene.texts.insert(veksg::Text());
    return scene;
}

TEST(SCScene, ResizeAsksSixSevenEightAndSizesTheRestFromFontsAndTexts) {
    SCScene scene;
    scene.fonts.resizeToFitKey(2, veksg::Font());
    scene.texts.resizeToFitKey(1, veksg::Text());
    scene.links6b.insert(1, 8, -1);
    scene.links8.insert(1, 42, -1);
    EXPECT_EQ(resizeAsking(scene, {{6, 4}, {7, 1}, {8, 3}, {10, 9}}),
              (std::vector<short>{6, 7, 8}));

    EXPECT_EQ(valuesOf(scene.links6a), Ints(5, -1));
    EXPECT_EQ(valuesOf(scene.links6b), (Ints{-1, 8, -1, -1, -1}));
    EXPECT_EQ(valuesOf(scene.links7), Ints(2, -1));
    EXPECT_EQ(valuesOf(scene.textLinksA), Ints(2, -1));
    EXPECT_EQ(valuesOf(scene.textLinksB), Ints(2, -1));
    EXPECT_EQ(valuesOf(scene.links8), (Ints{-1, 42, -1, -1}));
    EXPECT_EQ(valuesOf(scene.hierarchy), std::vector<Ints>(3));
    EXPECT_EQ(scene.meshes.size(), 0);
}

// Copies share the geometry, so the scene's cleanup empties it for the copy too, while the
// copy keeps it alive and keeps its own by-value tables.
TEST(SCScene, CleanupEmptiesEverythingButLinks8AndEmptiesSharedGeometry) {
    SCScene scene = filledScene();
    const auto mesh = scene.meshes.getValue(0);
    const auto polyline = scene.polylines.getValue(0);
    const auto texture = scene.textures.getValue(0);
    const SCScene copy = scene;

    scene.cleanup();
    EXPECT_EQ(valuesOf(scene.links8), (Ints{3, 3}));
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

    EXPECT_EQ(copy.meshes.getValue(0), mesh);
    EXPECT_EQ((std::vector<long>{mesh.use_count(), polyline.use_count(), texture.use_count()}),
              std::vector<long>(3, 2));
    EXPECT_TRUE(mesh->vn.empty() && mesh->vnc.empty() && mesh->vnt.empty());
    EXPECT_TRUE(polyline->points.empty() && polyline->values.empty());
    EXPECT_EQ(copy.hierarchy.getValue(0), Ints{7});
}

} // namespace
