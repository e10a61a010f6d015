#include <gtest/gtest.h>

#include "common/Checks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::resizeAsking;
using testing_support::valuesOf;
using veksg::SCScene;
using Ints = std::vector<int>;

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

// Whoever else holds the scene's meshes and polylines sees them emptied too.
TEST(SCScene, CleanupEmptiesEverythingButLinks8AndEmptiesSharedGeometry) {
    SCScene scene;
    const auto mesh = std::make_shared<veksg::Mesh>();
    mesh->vn.resize(3);
    mesh->vnc.resize(2);
    mesh->vnt.resize(1);
    const auto polyline = std::make_shared<veksg::Polyline>();
    polyline->points.resize(2);
    polyline->values = {1, 2};
    const auto texture = std::make_shared<veksg::Texture>();
    scene.meshes.insert(mesh);
    scene.polylines.insert(polyline);
    scene.textures.insert(texture);
    scene.meshMaterials.insert(veksg::MMaterial());
    scene.polylineMaterials.insert(veksg::PLMaterial());
    scene.boxes.insert(veksg::BBox());
    scene.transforms.insert(veksg::Transform());
    scene.points.insert(veksg::Point3());
    for (auto* links :
         {&scene.links6a, &scene.links7, &scene.links6b, &scene.textLinksA, &scene.textLinksB})
        links->insert(5);
    scene.links8.resizeToFitKey(1, 3);
    scene.fonts.insert(veksg::Font());
    scene.hierarchy.addChild(0, 7);
    scene.texts.insert(veksg::Text());

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
    EXPECT_EQ(mesh.use_count() + polyline.use_count() + texture.use_count(), 3);
    EXPECT_TRUE(mesh->vn.empty() && mesh->vnc.empty() && mesh->vnt.empty());
    EXPECT_TRUE(polyline->points.empty() && polyline->values.empty());
}

} // namespace
