#include <gtest/gtest.h>

#include "vek2d/SCScene2D.h"

namespace {

using vek2d::SCScene2D;
using veksg::Color4;

TEST(Scene2D, Defaults) {
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

    const SCScene2D scene;
    EXPECT_EQ(scene.type(), 25);
    EXPECT_EQ(scene.current, 0);
    EXPECT_EQ(scene.color, Color4());
    EXPECT_EQ(scene.scale, -1.0f);
    for (int code : {0, 13, 63})
        EXPECT_EQ(SCScene2D(static_cast<veksg::Schema::TYPE>(code)).type(), code);
}

TEST(Scene2D, ClearAllAndCleanupKeepEverything) {
    SCScene2D scene;
    scene.sheets.emplace_back();
    scene.entities.emplace_back().points = {veksg::Point3(1.0f, 2.0f, 0.0f)};
    scene.texts.insert(veksg::Text());
    scene.map10.insert(5);
    scene.current = 2;

    scene.clearAll();
    scene.cleanup();
    EXPECT_EQ(scene.sheets.size(), 1u);
    EXPECT_EQ(scene.entities.at(0).points.size(), 1u);
    EXPECT_EQ(scene.texts.size() + scene.map10.size(), 2);
    EXPECT_EQ(scene.current, 2);
}

} // namespace
