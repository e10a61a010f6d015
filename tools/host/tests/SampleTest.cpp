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
    EXPECT_EQ(topo.nodeLists3.getValue(0), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(doc().scene->hierarchy.getValue(0), (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(doc().scene->hierarchy.size(), 5) << "a slot for every node, leaves too";
    for (int node = 1; node < 5; ++node) {
        EXPECT_EQ(topo.nodeRefs1.getValue(node), 0);
        EXPECT_TRUE(topo.nodes.getValue(node).flag) << "parts carry geometry";
    }
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

TEST_F(Sample, EveryTriangleLeadsToExactlyOneFaceOfItsNode) {
    auto& scene = *doc().scene;
    auto& res = *doc().resources;
    for (int mesh = 0; mesh < scene.meshes.size(); ++mesh) {
        const int triangles = vertexCount(*scene.meshes.getValue(mesh)) / 3;
        std::vector<int> faceOf(static_cast<std::size_t>(triangles), -1);
        for (int p = 0; p < res.primitivesA.size(); ++p) {
            if (res.primALinks1.getValue(p) != mesh) continue;
            const auto& range = res.primitivesA.getValue(p);
            for (int t = range.first / 3; t < (range.first + range.count) / 3; ++t) {
                EXPECT_EQ(faceOf[static_cast<std::size_t>(t)], -1) << "overlapping ranges";
                faceOf[static_cast<std::size_t>(t)] = range.id;
            }
        }
        for (const int face : faceOf) {
            ASSERT_GE(face, 0) << "a triangle of mesh " << mesh << " belongs to no face";
            EXPECT_EQ(doc().topo->faceRefs2.getValue(face), scene.links6a.getValue(mesh));
        }
    }
}

TEST_F(Sample, BoxesNestAndOrientedBoxesFitTheParts) {
    auto& scene = *doc().scene;
    const auto& root = scene.boxes.getValue(0);
    for (int node = 1; node < 5; ++node) {
        const auto& box = scene.boxes.getValue(node);
        ASSERT_TRUE(box.valid);
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_LE(root.min[axis], box.min[axis] + 1e-4f);
            EXPECT_GE(root.max[axis], box.max[axis] - 1e-4f);
        }
    }
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

    EXPECT_EQ(d.topo->nodeFlags.size(), 5);
    EXPECT_EQ(d.runtime->visibility.sets[0].size(), 5u);
    EXPECT_EQ(d.runtime->visibility.sets[2].size(), static_cast<std::size_t>(d.topo->faces.size()));
    EXPECT_EQ(d.pmi->relation1.size(), 5);
    EXPECT_EQ(lastKeyOf(d, LAYERS), 1);
    EXPECT_EQ(lastKeyOf(d, PMI_ITEMS), -1);
    EXPECT_EQ(lastKeyOf(d, 9), -1) << "a code the tool gives no meaning";
    EXPECT_TRUE(checkDocument(d).ok());
}

} // namespace
} // namespace vekhost::test
