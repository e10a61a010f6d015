#include <cstring>
#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::OBBox;
using veksg::Point3;

static_assert(sizeof(veksg::VN) == 6 * sizeof(float) && sizeof(veksg::NV) == 6 * sizeof(float));
static_assert(sizeof(veksg::VNC) == 10 * sizeof(float) && sizeof(veksg::CNV) == 10 * sizeof(float));
static_assert(sizeof(veksg::VNT) == 8 * sizeof(float) && sizeof(veksg::TNV) == 8 * sizeof(float));
static_assert(std::is_trivially_copyable_v<veksg::VNC> && std::is_trivially_copyable_v<veksg::TNV>);
static_assert(std::is_trivially_default_constructible_v<veksg::VN>);

TEST(Records, Defaults) {
    const veksg::Transform t;
    EXPECT_EQ(t.matrix, vekmath::MatrixUtils::createIdentity());
    EXPECT_FALSE(t.valid);
    EXPECT_FALSE(veksg::BBox().valid);
    EXPECT_FALSE(OBBox().valid);

    const veksg::PrimitiveInfo p;
    EXPECT_EQ(p.id, -1);
    EXPECT_EQ(p.first, 0);
    EXPECT_EQ(p.count, 0);
    EXPECT_EQ(p.mode, 0);

    const veksg::VertexInfo v;
    EXPECT_EQ(v.stride, 1);
    EXPECT_EQ(v.count, 0);
    EXPECT_EQ(v.data, nullptr);
    EXPECT_EQ(veksg::IndexInfo().count, 0);

    const veksg::Node n;
    EXPECT_EQ(n.id, -1);
    EXPECT_FALSE(n.flag);
    EXPECT_EQ(n.ref, -1);
    EXPECT_STREQ(n.name(), L"");

    const veksg::Face f;
    const veksg::Edge e;
    EXPECT_EQ(f.id, -1);
    EXPECT_FALSE(f.flag);
    EXPECT_EQ(e.id, -1);
    EXPECT_EQ(e.ref, -1);
    EXPECT_EQ(e.kind, 0);
    EXPECT_EQ(veksg::Vertex().id, -1);
    EXPECT_EQ(veksg::Surface().id, -1);
    EXPECT_EQ(veksg::Curve().id, -1);
}

TEST(Node, SetNameReplacesTheWholeName) {
    veksg::Node n;
    n.setName(L"bracket-\u00e9\u4e2d");
    EXPECT_STREQ(n.name(), L"bracket-\u00e9\u4e2d");
    n.setName(L"x");
    EXPECT_STREQ(n.name(), L"x");
    n.setName(L"");
    EXPECT_STREQ(n.name(), L"");
    veksg::Node copy(n);
    n.setName(L"changed");
    EXPECT_STREQ(copy.name(), L"");
}

TEST(OBBox, CornersFollowTheirNames) {
    OBBox box;
    box.center = Point3(10.0f, 20.0f, 30.0f);
    box.axisX = Point3(1.0f, 0.0f, 0.0f);
    box.axisY = Point3(0.0f, 2.0f, 0.0f);
    box.axisZ = Point3(0.0f, 0.0f, 4.0f);
    const struct {
        const char* name;
        Point3 corner;
        Point3 expected;
    } corners[] = {
        {"llb", box.llb(), Point3(9, 18, 26)},  {"lrb", box.lrb(), Point3(11, 18, 26)},
        {"lrf", box.lrf(), Point3(11, 18, 34)}, {"llf", box.llf(), Point3(9, 18, 34)},
        {"urf", box.urf(), Point3(11, 22, 34)}, {"ulf", box.ulf(), Point3(9, 22, 34)},
        {"urb", box.urb(), Point3(11, 22, 26)}, {"ulb", box.ulb(), Point3(9, 22, 26)},
    };
    for (const auto& c : corners)
        EXPECT_EQ(c.corner, c.expected) << c.name;
}

TEST(OBBox, OppositeCornersAreSymmetricAndZeroAxesCollapse) {
    OBBox box;
    box.center = Point3(0.5f, -1.25f, 3.0f);
    box.axisX = Point3(0.3f, 0.1f, -0.7f);
    box.axisY = Point3(-0.2f, 0.9f, 0.05f);
    box.axisZ = Point3(0.4f, -0.6f, 0.8f);
    const std::pair<Point3, Point3> opposite[] = {{box.urf(), box.llb()},
                                                  {box.ulf(), box.lrb()},
                                                  {box.urb(), box.llf()},
                                                  {box.ulb(), box.lrf()}};
    for (const auto& [a, b] : opposite)
        for (int i = 0; i < 3; ++i)
            EXPECT_NEAR(a[i] + b[i], 2.0f * box.center[i], 1e-5f);

    OBBox flat;
    flat.center = box.center;
    for (const Point3& c : {flat.llb(), flat.lrb(), flat.lrf(), flat.llf(), flat.urf(), flat.ulf(),
                            flat.urb(), flat.ulb()})
        EXPECT_EQ(c, flat.center);
}

TEST(SharedBuffers, CopiesShareAndDestructionGivesBackOneReference) {
    veksg::VertexInfo first;
    first.data = std::shared_ptr<float[]>(new float[6]{1, 2, 3, 4, 5, 6});
    first.count = 2;
    first.stride = 3;
    {
        const veksg::VertexInfo copy(first);
        EXPECT_EQ(copy.data.get(), first.data.get());
        EXPECT_EQ(first.data.use_count(), 2);
    }
    EXPECT_EQ(first.data.use_count(), 1);
    EXPECT_EQ(first.data[5], 6.0f);
    EXPECT_EQ(first.count, 2);

    veksg::IndexInfo indices;
    indices.data = std::shared_ptr<std::uint32_t[]>(new std::uint32_t[3]{0, 1, 2});
    auto held = std::make_shared<veksg::IndexInfo>(indices);
    EXPECT_EQ(indices.data.use_count(), 2);
    held.reset();
    EXPECT_EQ(indices.data.use_count(), 1);
}

TEST(Mesh, CopiesAreDeep) {
    veksg::Mesh mesh;
    mesh.vn.push_back({{1, 2, 3}, {0, 0, 1}});
    mesh.vnc.push_back({{1, 2, 3}, {0, 1, 0}, {1, 0, 0, 1}});
    mesh.vnt.push_back({{4, 5, 6}, {1, 0, 0}, {0.5f, 0.25f}});
    veksg::Mesh copy(mesh);
    ASSERT_EQ(copy.vn.size(), 1u);
    EXPECT_NE(copy.vn.data(), mesh.vn.data());
    EXPECT_NE(copy.vnc.data(), mesh.vnc.data());
    EXPECT_EQ(std::memcmp(copy.vnt.data(), mesh.vnt.data(), sizeof(veksg::VNT)), 0);
    copy.vnt[0].texture[0] = 9.0f;
    EXPECT_EQ(mesh.vnt[0].texture[0], 0.5f);

    veksg::Polyline line;
    line.points.emplace_back(1.0f, 2.0f, 3.0f);
    line.values.push_back(7);
    veksg::Polyline other;
    other = line;
    other.values[0] = 8;
    EXPECT_EQ(line.values[0], 7);
    EXPECT_EQ(other.points, line.points);
}

} // namespace
