#include <cstdint>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "vek2d/SCScene2D.h"

namespace {

using vek2d::SCScene2D;
using veksg::Color4;
using veksg::Point3;

TEST(Scene2D, RecordDefaults) {
    const vek2d::Sheet sheet;
    const vek2d::View view;
    EXPECT_EQ(sheet.name, L" ");
    EXPECT_EQ(view.name, L" ");
    EXPECT_EQ(sheet.tolerance, 0.001);
    EXPECT_EQ(sheet.color, Color4(0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_FALSE(sheet.flag0 || sheet.flag1 || view.flag);

    const vek2d::Entity entity;
    EXPECT_EQ(entity.id, -1);
    EXPECT_EQ(entity.scale, 1.0);
    EXPECT_EQ(entity.matrix, (vekmath::Tuple<float, 16>())) << "zeros, not the identity";
    EXPECT_EQ(entity.value0 + entity.value1 + entity.value2 + entity.style, 0);

    EXPECT_EQ(vek2d::IndicesInfo().count, 0);
    EXPECT_EQ(vek2d::Ellipse().param1, 0);
    EXPECT_EQ(vek2d::EntityColor().color, Color4());

    const SCScene2D scene;
    EXPECT_EQ(scene.type(), veksg::Schema::SCENE_2D);
    EXPECT_EQ(scene.current, 0);
    EXPECT_EQ(scene.color, Color4());
    EXPECT_EQ(scene.scale, -1.0f);
}

TEST(Scene2D, StoresTheCodeItIsGiven) {
    for (int code : {0, 13, 25, 33, 63}) {
        const SCScene2D scene(static_cast<veksg::Schema::TYPE>(code));
        EXPECT_EQ(scene.type(), code);
        const SCScene2D copy(scene);
        EXPECT_EQ(copy.type(), code);
    }
}

TEST(Scene2D, ClearAllKeepsEverythingAndCopiesShareOnlyIndexData) {
    SCScene2D scene;
    scene.sheets.emplace_back();
    vek2d::Entity entity;
    entity.points = {Point3(1.0f, 2.0f, 0.0f)};
    scene.entities = {entity};
    scene.indices.push_back({std::shared_ptr<std::uint32_t[]>(new std::uint32_t[3]{0, 1, 2}), 3});
    scene.texts.insert(veksg::Text());
    scene.lists7.insert({4});
    scene.map10.insert(5);
    scene.current = 2;
    scene.scale = 0.5f;

    scene.clearAll();
    scene.cleanup();
    EXPECT_EQ(scene.sheets.size(), 1u);
    EXPECT_EQ(scene.entities.at(0).points.size(), 1u);
    EXPECT_EQ(scene.indices.at(0).count, 3);
    EXPECT_EQ(scene.texts.size(), 1);
    EXPECT_EQ(scene.lists7.getValue(0), (std::vector<int>{4}));
    EXPECT_EQ(scene.map10.getValue(0), 5);
    EXPECT_EQ(scene.current, 2);
    EXPECT_EQ(scene.scale, 0.5f);

    SCScene2D copy(static_cast<veksg::Schema::TYPE>(3));
    copy = scene;
    scene.entities.front().points.clear();
    EXPECT_EQ(copy.entities.front().points.size(), 1u);
    EXPECT_EQ(copy.indices.front().indices, scene.indices.front().indices);
    EXPECT_EQ(copy.type(), veksg::Schema::SCENE_2D);
}

} // namespace
