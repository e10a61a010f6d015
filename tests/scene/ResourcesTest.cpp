#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

TEST(Resources, Defaults) {
    const veksg::MMaterial m;
    EXPECT_EQ(m.shininess, 30.0f);
    EXPECT_FALSE(m.valid);
    EXPECT_EQ(m.diffuse, veksg::Color4());
    const veksg::PLMaterial pl;
    EXPECT_EQ(pl.width, 1.0f);
    EXPECT_FALSE(pl.valid);
    const veksg::Font f;
    EXPECT_EQ(f.size, 10);
    EXPECT_EQ(f.style, 0);
    EXPECT_EQ(f.attributes, 0);
    EXPECT_STREQ(f.name(), L"");
    EXPECT_STREQ(f.path(), L"");
    const veksg::Text t;
    EXPECT_EQ(t.matrix, vekmath::MatrixUtils::createIdentity());
    EXPECT_EQ(t.font, 0);
    EXPECT_EQ(t.color, 0);
    EXPECT_EQ(t.length(), 0);
    EXPECT_STREQ(t.get(), L"");
    EXPECT_TRUE(veksg::Texture().path.empty());
}

TEST(Resources, StringAccessorsCopyTheirArgument) {
    wchar_t buffer[] = L"DejaVu Sans";
    veksg::Font f;
    f.setName(buffer);
    f.setPath(L"/usr/share/fonts/dejavu.ttf");
    buffer[0] = L'X';
    EXPECT_STREQ(f.name(), L"DejaVu Sans");
    EXPECT_STREQ(f.path(), L"/usr/share/fonts/dejavu.ttf");
    veksg::Font copy(f);
    f.setName(L"");
    EXPECT_STREQ(copy.name(), L"DejaVu Sans");

    veksg::Text t;
    t.set(L"abc");
    EXPECT_EQ(t.length(), 3);
    t.set(L"\u00d8 12");
    EXPECT_EQ(t.length(), 4);
    EXPECT_STREQ(t.get(), L"\u00d8 12");
}

} // namespace
