#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

TEST(Resources, Defaults) {
    const veksg::Font f;
    veksg::Text t;
    EXPECT_EQ(veksg::MMaterial().shininess, 30.0f);
    EXPECT_EQ(veksg::PLMaterial().width, 1.0f);
    EXPECT_FALSE(veksg::MMaterial().valid || veksg::PLMaterial().valid);
    EXPECT_EQ(f.size, 10);
    EXPECT_EQ(f.style + f.attributes + t.font + t.color + t.attributes + t.length(), 0);
    EXPECT_STREQ(f.name(), L"");
    EXPECT_EQ(t.matrix, vekmath::MatrixUtils::createIdentity());
    t.set(L"\u00d8 12");
    EXPECT_EQ(t.length(), 4);
}

} // namespace
