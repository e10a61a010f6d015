// The document-level records from real files: animation placements against Assimp's own
// keys, the files a model reads (and the warning when one is gone), CAD headers, points.
#include <Interface_InterfaceModel.hxx>
#include <STEPControl_Reader.hxx>
#include <assimp/Importer.hpp>
#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "Animation.h"
#include "Check.h"
#include "DocumentInfo.h"
#include "Loader.h"
#include "TestFiles.h"
#include "Text.h"
#include "Visibility.h"

namespace vekhost::test {
namespace {

namespace fs = std::filesystem;

LoadResult loadChecked(const std::string& path, CheckResult& check) {
    LoadResult loaded = loadFile(path, LoadOptions());
    check = checkDocument(*loaded.document);
    EXPECT_TRUE(check.ok()) << (check.problems.empty() ? "" : check.problems.front());
    return loaded;
}

int nodeNamed(const Document& doc, const wchar_t* name) {
    for (int n = 0; n < doc.topo->nodes.size(); ++n)
        if (std::wcscmp(doc.topo->nodes.getValue(n).name(), name) == 0) return n;
    return -1;
}

const aiNodeAnim& channel(const aiAnimation& animation, const char* node) {
    for (unsigned c = 0; c < animation.mNumChannels; ++c)
        if (std::string(animation.mChannels[c]->mNodeName.C_Str()) == node)
            return *animation.mChannels[c];
    throw std::runtime_error(std::string("no channel for ") + node);
}

aiMatrix4x4 keyed(const aiNodeAnim& c, unsigned k, const aiQuaternion& rotation) {
    return aiMatrix4x4(c.mScalingKeys[0].mValue, rotation, c.mPositionKeys[k].mValue);
}

// Spherical interpolation written as a turn about one axis: from `a`, the share `s` of the
// shorter turn to `b`.
aiQuaternion turned(const aiQuaternion& a, aiQuaternion b, double s) {
    if (a.w * b.w + a.x * b.x + a.y * b.y + a.z * b.z < 0) b = aiQuaternion(-b.w, -b.x, -b.y, -b.z);
    const aiQuaternion delta = aiQuaternion(a).Conjugate() * b;
    const double angle = 2 * std::acos(std::clamp<double>(delta.w, -1, 1));
    const double sine = std::sin(angle / 2);
    const aiVector3D axis = sine > 1e-9 ? aiVector3D(delta.x, delta.y, delta.z) / float(sine)
                                        : aiVector3D(1, 0, 0);
    const double half = s * angle / 2;
    const auto sh = static_cast<ai_real>(std::sin(half));
    return a * aiQuaternion(static_cast<ai_real>(std::cos(half)), axis.x * sh, axis.y * sh,
                            axis.z * sh);
}

void expectPlacement(const veksg::Transform& placed, const aiMatrix4x4& expected) {
    for (unsigned row = 0; row < 3; ++row)
        for (unsigned col = 0; col < 4; ++col)
            EXPECT_NEAR(placed.matrix[static_cast<int>(col * 4 + row)], expected[row][col],
                        1e-3 * (col == 3 ? 100 : 1))
                << "row " << row << ", column " << col;
}

// A motion capture: 272 keys; the hips and the node below them have a key at each, while the
// pelvis turns at fewer, so that it is interpolated at the others.
TEST(Animation, PlacesNodesWhereAssimpsOwnKeysPutThem) {
    const std::string path = assimpFile("ASE/MotionCaptureROM.ase");
    if (!exists(path)) GTEST_SKIP() << path << " is not installed";
    CheckResult check;
    const LoadResult loaded = loadChecked(path, check);
    const Document& doc = *loaded.document;
    const auto& keys = doc.animation->keys;
    ASSERT_EQ(keys.size(), 272u);
    const std::vector<int> nodes = animatedNodes(doc);
    ASSERT_EQ(doc.animation->transforms.size(), keys.size() * nodes.size());

    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(path, 0);
    ASSERT_TRUE(scene && scene->mNumAnimations > 0);
    const aiAnimation& animation = *scene->mAnimations[0];
    const aiNodeAnim& hips = channel(animation, "Bip01");
    const aiNodeAnim& steps = channel(animation, "Bip01 Schritte");
    const aiNodeAnim& pelvis = channel(animation, "Bip01 Becken");
    // The nodes above the hips hold still.
    aiMatrix4x4 above;
    for (const aiNode* node = scene->mRootNode->FindNode("Bip01")->mParent; node;
         node = node->mParent)
        above = node->mTransformation * above;
    auto placed = [&](const wchar_t* name, unsigned k) {
        const int column = doc.topo->nodeRefs2.getValue(nodeNamed(doc, name));
        return doc.animation->transforms[k * nodes.size() + static_cast<std::size_t>(column)];
    };
    auto hipsAt = [&](unsigned k) { return above * keyed(hips, k, hips.mRotationKeys[k].mValue); };

    const unsigned k = 100;
    ASSERT_EQ(steps.mPositionKeys[k].mTime, hips.mPositionKeys[k].mTime);
    EXPECT_EQ(*std::next(keys.begin(), k),
              std::lround(hips.mPositionKeys[k].mTime * 1000 / animation.mTicksPerSecond));
    expectPlacement(placed(L"Bip01 Schritte", k),
                    hipsAt(k) * keyed(steps, k, steps.mRotationKeys[k].mValue));

    // The first key of the hips that the pelvis's rotation lacks.
    const aiQuatKey* turns = pelvis.mRotationKeys;
    const aiQuatKey* end = turns + pelvis.mNumRotationKeys;
    unsigned gap = 0;
    while (std::find_if(turns, end, [&](const aiQuatKey& key) {
               return key.mTime == hips.mPositionKeys[gap].mTime;
           }) != end)
        ++gap;
    const double time = hips.mPositionKeys[gap].mTime;
    const aiQuatKey* after = std::find_if(turns, end, [&](const aiQuatKey& key) {
        return key.mTime > time;
    });
    ASSERT_TRUE(after != turns && after != end);
    const aiQuatKey& before = after[-1];
    const double share = (time - before.mTime) / (after->mTime - before.mTime);
    expectPlacement(placed(L"Bip01 Becken", gap),
                    hipsAt(gap) * keyed(pelvis, 0, turned(before.mValue, after->mValue, share)));
}

// One channel that turns at 182 keys and holds one position and one scale.
TEST(Animation, TakesTheKeysOfEveryKindOfChannel) {
    const std::string path = assimpFile("3DS/RotatingCube.3DS");
    if (!exists(path)) GTEST_SKIP() << path << " is not installed";
    EXPECT_EQ(loadFile(path, LoadOptions()).document->animation->keys.size(), 182u);
}

// Between keys a placement turns along the shorter arc at an even rate (a quarter of the
// way, a quarter of the turn), and holds before the first key and after the last.
TEST(Animation, PoseInterpolatesBetweenKeysAndHoldsOutside) {
    Document doc;
    DocumentBuilder builder(doc);
    builder.addNode(L"spinner", -1, Matrix());
    // A turn about Z by `degrees`, scaled by `scale` and moved along X by `x`.
    auto turn = [](double degrees, double scale, double x) {
        const double a = degrees * std::acos(-1.0) / 180;
        Matrix m;
        m.m = {scale * std::cos(a), scale * std::sin(a), 0, 0, -scale * std::sin(a),
               scale * std::cos(a), 0, 0, 0, 0, scale, 0, x, 0, 0, 1};
        return m;
    };
    // From 100 to -100 degrees the shorter way passes 180.
    const Matrix start = turn(100, 1, 1);
    const Matrix end = turn(-100, 3, 5);
    builder.setAnimation({{0, 100}, {0}, {start, end}});
    builder.complete();
    doc.resizeAll();
    ASSERT_TRUE(checkDocument(doc).ok());

    const AnimationPose pose(doc, 25);
    const Matrix* quarter = pose.placement(0);
    ASSERT_NE(quarter, nullptr);
    const double scale = std::hypot(quarter->m[0], quarter->m[1]);
    EXPECT_NEAR(std::atan2(quarter->m[1], quarter->m[0]) * 180 / std::acos(-1.0), 140, 1e-6);
    EXPECT_NEAR(scale, 1.5, 1e-6);
    EXPECT_NEAR(quarter->m[12], 2, 1e-6);
    EXPECT_NEAR(AnimationPose(doc, -50).placement(0)->m[1], start.m[1], 1e-6);
    EXPECT_NEAR(AnimationPose(doc, 1e9).placement(0)->m[1], end.m[1], 1e-6);
    EXPECT_EQ(pose.placement(1), nullptr);
}

struct Companions {
    const char* model;
    std::map<std::string, std::wstring> files; // name and role
    const char* removed;
};

// Copies of a model with every file it reads, then without one of them: the load still
// succeeds and the check warns about exactly that file.
TEST(ExternalFiles, ListEveryFileAModelReadsAndWarnWhenOneIsGone) {
    const Companions cases[] = {
        {"OBJ/spider.obj",
         {{"spider.mtl", roles::materialLibrary},
          {"wal67ar_small.jpg", roles::texture},
          {"wal69ar_small.jpg", roles::texture},
          {"SpiderTex.jpg", roles::texture},
          {"drkwood2.jpg", roles::texture},
          {"engineflare1.jpg", roles::texture}},
         "spider.mtl"},
        {"glTF2/BoxTextured-glTF/BoxTextured.gltf",
         {{"BoxTextured0.bin", roles::buffer}, {"CesiumLogoFlat.png", roles::texture}},
         "CesiumLogoFlat.png"},
    };
    int copy = 0;
    for (const Companions& c : cases) {
        SCOPED_TRACE(c.model);
        const fs::path source = assimpFile(c.model);
        if (!exists(source)) GTEST_SKIP() << source << " is not installed";
        const fs::path folder = fs::path(scratchDirectory()) / ("copy" + std::to_string(copy++));
        fs::create_directories(folder);
        fs::copy_file(source, folder / source.filename());
        for (const auto& [name, role] : c.files)
            fs::copy_file(source.parent_path() / name, folder / name);
        const std::string model = (folder / source.filename()).string();

        CheckResult check;
        LoadResult loaded = loadChecked(model, check);
        EXPECT_TRUE(check.warnings.empty());
        const veksg::SCExtFile& ext = *loaded.document->extFiles;
        std::map<std::string, std::wstring> listed;
        for (int k = 0; k < ext.files.size(); ++k) {
            const fs::path path(ext.files.getValue(k).path);
            EXPECT_EQ(path.parent_path(), folder);
            EXPECT_EQ(ext.flags.getValue(k), 1);
            listed[path.filename().string()] = ext.names[static_cast<std::size_t>(k)];
        }
        EXPECT_EQ(listed, c.files);
        EXPECT_GT(ext.fileIndices.size(), 0) << "meshes name their textures";

        fs::remove(folder / c.removed);
        loaded = loadChecked(model, check);
        ASSERT_EQ(check.warnings.size(), 1u);
        EXPECT_NE(check.warnings[0].find(c.removed), std::string::npos) << check.warnings[0];
    }
}

// Texture names written on Windows (backslashes, letters in another case than on disk), a
// model that its reader looks for in two places before it finds it, and an animation file
// that a reader only looks for in case it is there.
TEST(ExternalFiles, AreFoundWhereTheirReadersFindThem) {
    for (const auto& [file, count] : {std::pair{"3DS/test1.3ds", 3},
                                      {"LWS/move_x.lws", 1},
                                      {"MD5/SimpleCube.md5mesh", 0}}) {
        SCOPED_TRACE(file);
        const std::string path = assimpFile(file);
        if (!exists(path)) GTEST_SKIP() << path << " is not installed";
        CheckResult check;
        const LoadResult loaded = loadChecked(path, check);
        const veksg::SCExtFile& ext = *loaded.document->extFiles;
        ASSERT_EQ(ext.files.size(), count);
        for (int k = 0; k < ext.files.size(); ++k)
            EXPECT_TRUE(exists(utf8FromWide(ext.files.getValue(k).path)));
        EXPECT_TRUE(check.warnings.empty());
    }
}

std::map<std::wstring, std::wstring> documentAttributes(const Document& doc) {
    std::map<std::wstring, std::wstring> found;
    const auto& attributes = *doc.attributes;
    for (int a = 0; a < attributes.attributes.size(); ++a)
        if (attributes.attributeIndices.getValue(a).empty())
            found[attributes.attributes.getValue(a)->key()] =
                attributes.attributes.getValue(a)->get().get();
    return found;
}

struct Header {
    const char* file;
    const wchar_t* author;
    const wchar_t* organisation;
    const wchar_t* system;
    const wchar_t* timestamp;
    double tolerance;
};

TEST(DocumentInfo, ComesFromTheHeadersOfCadFiles) {
    const Header headers[] = {
        {"step/screw.step", L"Author Name", L"MATRA-DATAVISION", L"EUCLID", L"1998-09-10T11:25:01",
         1e-6},
        {"step/linkrods.step", L"Author Name", L"MATRA-DATAVISION", L"EUCLID",
         L"1998-09-10T11:31:03", 2e-5},
        {"iges/bearing.iges", L"mls", L"Matra Datavision", L"MATRA-DATAVISION EUCLID-QUANTUM",
         L"980911.141958", 1e-4},
    };
    for (const Header& h : headers) {
        SCOPED_TRACE(h.file);
        const std::string path = occtFile(h.file);
        if (!exists(path)) GTEST_SKIP() << path << " is not installed";
        CheckResult check;
        const LoadResult loaded = loadChecked(path, check);
        const Document& doc = *loaded.document;
        const auto attributes = documentAttributes(doc);
        EXPECT_EQ(attributes.at(L"author"), h.author);
        EXPECT_EQ(attributes.at(L"organisation"), h.organisation);
        EXPECT_EQ(attributes.at(L"originatingSystem"), h.system);
        EXPECT_EQ(attributes.at(L"timestamp"), h.timestamp);
        EXPECT_EQ(attributes.count(L"fileName"), 1u);
        EXPECT_EQ(doc.info->info0, MILLIMETRE);
        EXPECT_EQ(doc.info->info1, MILLIMETRE);
        EXPECT_FLOAT_EQ(doc.info->tolerance, static_cast<float>(h.tolerance));
        EXPECT_EQ(doc.info->info3, 1);
        if (std::string(h.file).rfind("step", 0) != 0) continue;
        STEPControl_Reader plain;
        plain.ReadFile(path.c_str());
        EXPECT_EQ(doc.info->info2, plain.Model()->NbEntities());
    }
}

// Files of vertices without faces load as points, with their colours where they have them.
TEST(PointClouds, LoadAsPointsThatTheirNodeShows) {
    const std::string path = assimpFile("PLY/points.ply");
    if (!exists(path)) GTEST_SKIP() << path << " is not installed";
    CheckResult check;
    const LoadResult loaded = loadChecked(path, check);
    Document& doc = *loaded.document;
    const auto& res = *doc.resources;
    ASSERT_EQ(res.vertexInfos.size(), 1);
    const veksg::VertexInfo& points = *res.vertexInfos.getValue(0);
    ASSERT_EQ(points.count, 4);
    ASSERT_EQ(points.stride, 7);
    // The second point: 0 0 1, coloured 255 0 255.
    EXPECT_EQ(std::vector<float>(&points.data[7], &points.data[14]),
              (std::vector<float>{0, 0, 1, 1, 0, 1, 1}));
    ASSERT_EQ(res.primitivesC.size(), 1);
    const int node = res.primitivesC.getValue(0).id;
    EXPECT_EQ(res.primitivesC.getValue(0).count, 4);
    EXPECT_TRUE(doc.scene->boxes.getValue(node).valid);
    EXPECT_TRUE(Visibility(doc).pointsShown(0));
    doc.runtime->visibility.sets[0][static_cast<std::size_t>(node)] = false;
    EXPECT_FALSE(Visibility(doc).pointsShown(0));
}

} // namespace
} // namespace vekhost::test
