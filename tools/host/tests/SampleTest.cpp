// The built-in sample is an assembly whose every part is known, so the mapping from CAD
// data to components can be checked record by record.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "Builder.h"
#include "Check.h"
#include "KeySpaces.h"
#include "Loader.h"

namespace vekhost::test {
namespace {

class Sample : public testing::Test {
protected:
    static void SetUpTestSuite() { loaded = new LoadResult(loadSample(LoadOptions())); }
    static void TearDownTestSuite() {
        delete loaded;
        loaded = nullptr;
    }
    static Document& doc() { return *loaded->document; }
    static int nodeNamed(const wchar_t* name) {
        for (const auto& node : doc().topo->nodes)
            if (std::wstring(node.name()) == name) return node.id;
        return -1;
    }
    static const wchar_t* attribute(int node, const wchar_t* key) {
        for (const int a : doc().topo->nodeLists10.getValue(node)) {
            const auto& value = doc().attributes->attributes.getValue(a);
            if (std::wstring(value->key()) == key) return value->get().get();
        }
        return nullptr;
    }

    static LoadResult* loaded;
};
LoadResult* Sample::loaded = nullptr;

TEST_F(Sample, ProductStructureBecomesNodesUnderOneRoot) {
    auto& topo = *doc().topo;
    ASSERT_EQ(topo.nodes.size(), 5);
    EXPECT_STREQ(topo.nodes.getValue(0).name(), L"flanged bolt assembly");
    // The scene tree and the parent links agree with these lists, as the check shows.
    EXPECT_EQ(topo.nodeLists3.getValue(0), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(doc().scene->hierarchy.size(), 5) << "a slot for every node, leaves too";
    for (int node = 1; node < 5; ++node)
        EXPECT_TRUE(topo.nodes.getValue(node).flag) << "parts carry geometry";
    EXPECT_FALSE(topo.nodes.getValue(0).flag);
    EXPECT_EQ(topo.nodeRefs1.getValue(0), -1);
    EXPECT_EQ(attribute(nodeNamed(L"bolt"), L"product"), std::wstring(L"flanged bolt M8x30"));
    EXPECT_EQ(attribute(nodeNamed(L"lock nut"), L"name"), std::wstring(L"lock nut"));
}

TEST_F(Sample, InstancesShareTheirPartsMeshAtTheirOwnPlacement) {
    auto& scene = *doc().scene;
    const int nut = nodeNamed(L"nut");
    const int lockNut = nodeNamed(L"lock nut");
    ASSERT_GE(nut, 0);
    ASSERT_GE(lockNut, 0);
    const int nutMesh = doc().topo->nodeLists9.getValue(nut).at(0);
    const int lockNutMesh = doc().topo->nodeLists9.getValue(lockNut).at(0);
    EXPECT_NE(nutMesh, lockNutMesh);
    EXPECT_EQ(scene.meshes.getValue(nutMesh), scene.meshes.getValue(lockNutMesh));
    EXPECT_EQ(doc().topo->nodes.getValue(lockNut).ref, nut) << "first node showing the part";
    EXPECT_FLOAT_EQ(scene.transforms.getValue(nut).matrix[14], -20.1f);
    EXPECT_FLOAT_EQ(scene.transforms.getValue(lockNut).matrix[14], -26.6f);
    // Their topology records are their own, placed in the world.
    const auto& nutFaces = doc().topo->nodeLists4.getValue(nut);
    const auto& lockFaces = doc().topo->nodeLists4.getValue(lockNut);
    ASSERT_EQ(nutFaces.size(), lockFaces.size());
    const auto& a = doc().topo->faces.getValue(nutFaces[0]);
    const auto& b = doc().topo->faces.getValue(lockFaces[0]);
    EXPECT_NEAR(a.pointA[2] - b.pointA[2], 6.5f, 1e-4f);
}

TEST_F(Sample, AFaceColouredApartGivesItsPartPerVertexColours) {
    auto& scene = *doc().scene;
    const int bolt = nodeNamed(L"bolt");
    const auto& boltMesh = *scene.meshes.getValue(doc().topo->nodeLists9.getValue(bolt).at(0));
    EXPECT_TRUE(boltMesh.vn.empty());
    ASSERT_FALSE(boltMesh.vnc.empty());
    const auto& washerMesh =
        *scene.meshes.getValue(doc().topo->nodeLists9.getValue(nodeNamed(L"washer")).at(0));
    EXPECT_TRUE(washerMesh.vnc.empty());
    // The marked face is the one whose triangles are blue; exactly one face is.
    int blueFaces = 0;
    for (const int face : doc().topo->nodeLists4.getValue(bolt)) {
        const auto& primitive = doc().resources->primitivesA.getValue(face);
        ASSERT_GT(primitive.count, 0);
        const auto& first = boltMesh.vnc[static_cast<std::size_t>(primitive.first)];
        blueFaces += first.color[2] > 0.7f && first.color[0] < 0.2f ? 1 : 0;
    }
    EXPECT_EQ(blueFaces, 1);
    EXPECT_NEAR(scene.meshMaterials.getValue(0).diffuse[0], 0.62f, 1e-3f);
}

// The root's box holding its parts is the pictures' business: they are framed by it.
TEST_F(Sample, OrientedBoxesFitTheParts) {
    // The nut is 6.5 high: its thinnest principal axis is Z, half that long.
    const auto& nut = doc().resources->orientedBoxes.getValue(nodeNamed(L"nut"));
    ASSERT_TRUE(nut.valid);
    float thinnest = 1e9f;
    float thinnestZ = 0;
    for (const auto* axis : {&nut.axisX, &nut.axisY, &nut.axisZ}) {
        const float length =
            std::sqrt((*axis)[0] * (*axis)[0] + (*axis)[1] * (*axis)[1] + (*axis)[2] * (*axis)[2]);
        if (length < thinnest) {
            thinnest = length;
            thinnestZ = std::fabs((*axis)[2]);
        }
    }
    EXPECT_NEAR(thinnest, 3.25f, 0.01f);
    EXPECT_NEAR(thinnestZ, 3.25f, 0.01f);
    EXPECT_NEAR(nut.center[2], -20.1f + 3.25f, 0.01f);
}

TEST_F(Sample, LayersInfoAndEveryComponentFollowTheKeySpaces) {
    Document& d = doc();
    ASSERT_EQ(d.layers.size(), 2);
    EXPECT_EQ(d.layers.getValue(0).name, L"fasteners");
    EXPECT_EQ(d.layerSetting->layer, 2);
    const int lockNut = nodeNamed(L"lock nut");
    EXPECT_EQ(d.topo->nodeLists8.getValue(lockNut), (std::vector<int>{0, 1}));
    EXPECT_EQ(d.scene->links8.getValue(1), lockNut);
    EXPECT_STREQ(d.info->file(), L"");
    EXPECT_FLOAT_EQ(d.info->tolerance, static_cast<float>(loaded->deflection));
    // The sizes of every side table and bit set are the check's.
    EXPECT_EQ(lastKeyOf(d, LAYERS), 1);
    EXPECT_EQ(lastKeyOf(d, PMI_ITEMS), -1);
    EXPECT_EQ(lastKeyOf(d, 9), -1) << "a code the tool gives no meaning";
    EXPECT_TRUE(checkDocument(d).ok());
}

} // namespace
} // namespace vekhost::test
