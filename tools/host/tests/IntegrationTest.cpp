// Real files that no one here wrote, loaded through the tool and compared with figures that
// Open CASCADE and Assimp compute on their own, through their plain (non-document) readers.
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <IGESControl_Reader.hxx>
#include <Poly_Triangulation.hxx>
#include <STEPControl_Reader.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Face.hxx>
#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "Builder.h"
#include "Check.h"
#include "Loader.h"
#include "SnapshotTest.h"
#include "TestFiles.h"

namespace vekhost::test {
namespace {

enum class Source { Occt, Assimp };

struct RealFile {
    const char* name;
    Source source;
    const char* path;
};

std::string pathOf(const RealFile& file) {
    return file.source == Source::Occt ? occtFile(file.path) : assimpFile(file.path);
}

struct CadFigures {
    int faces = 0;
    int edges = 0;
    int vertices = 0;
    long triangles = 0;
};

TopoDS_Shape readPlain(const std::string& path) {
    const std::string extension = path.substr(path.rfind('.'));
    if (extension == ".step") {
        STEPControl_Reader reader;
        reader.ReadFile(path.c_str());
        reader.TransferRoots();
        return reader.OneShape();
    }
    if (extension == ".iges") {
        IGESControl_Reader reader;
        reader.ReadFile(path.c_str());
        reader.TransferRoots();
        return reader.OneShape();
    }
    TopoDS_Shape shape;
    BRep_Builder builder;
    BRepTools::Read(shape, path.c_str(), builder);
    return shape;
}

// Faces, edges and vertices as Open CASCADE's explorer maps them, and the triangles of
// its mesher at the deflection the tool reported.
CadFigures cadFigures(const std::string& path, double deflection) {
    const TopoDS_Shape shape = readPlain(path);
    TopTools_IndexedMapOfShape faces;
    TopTools_IndexedMapOfShape edges;
    TopTools_IndexedMapOfShape vertices;
    TopExp::MapShapes(shape, TopAbs_FACE, faces);
    TopExp::MapShapes(shape, TopAbs_EDGE, edges);
    TopExp::MapShapes(shape, TopAbs_VERTEX, vertices);
    BRepMesh_IncrementalMesh mesher(shape, deflection, Standard_False, 0.5, Standard_False);
    CadFigures figures{faces.Extent(), edges.Extent(), vertices.Extent(), 0};
    for (int i = 1; i <= faces.Extent(); ++i) {
        TopLoc_Location location;
        const auto& triangulation = BRep_Tool::Triangulation(TopoDS::Face(faces(i)), location);
        if (!triangulation.IsNull()) figures.triangles += triangulation->NbTriangles();
    }
    return figures;
}

struct MeshFigures {
    int nodes = 0;
    int meshUses = 0;
    long triangles = 0;
    bool vertexColors = false;
};

void countNode(const aiScene& scene, const aiNode& node, MeshFigures& figures) {
    ++figures.nodes;
    for (unsigned i = 0; i < node.mNumMeshes; ++i) {
        const aiMesh& mesh = *scene.mMeshes[node.mMeshes[i]];
        if (!(mesh.mPrimitiveTypes & aiPrimitiveType_TRIANGLE)) continue;
        ++figures.meshUses;
        figures.vertexColors = figures.vertexColors || mesh.HasVertexColors(0);
        for (unsigned f = 0; f < mesh.mNumFaces; ++f)
            figures.triangles += mesh.mFaces[f].mNumIndices == 3 ? 1 : 0;
    }
    for (unsigned i = 0; i < node.mNumChildren; ++i)
        countNode(scene, *node.mChildren[i], figures);
}

// Nodes and triangles as Assimp's own scene holds them, every use of a mesh counted.
MeshFigures meshFigures(const std::string& path) {
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(path, aiProcess_Triangulate | aiProcess_SortByPType);
    MeshFigures figures;
    if (scene && scene->mRootNode) countNode(*scene, *scene->mRootNode, figures);
    return figures;
}

const RealFile files[] = {
    {"screw_step", Source::Occt, "step/screw.step"},
    {"linkrods_step", Source::Occt, "step/linkrods.step"},
    {"bearing_iges", Source::Occt, "iges/bearing.iges"},
    {"hammer_iges", Source::Occt, "iges/hammer.iges"},
    {"bottle_brep", Source::Occt, "occ/bottle.brep"},
    {"pump_nut_brep", Source::Occt, "occ/Pump_Nut.brep"},
    {"crank_arm_brep", Source::Occt, "occ/CrankArm.brep"},
    {"shape_stl", Source::Occt, "stl/shape.stl"},
    {"spider_binary_stl", Source::Assimp, "STL/Spider_binary.stl"},
    {"wuson_obj", Source::Assimp, "OBJ/WusonOBJ.obj"},
    {"vertex_colors_obj", Source::Assimp, "OBJ/cube_with_vertexcolors.obj"},
    {"wuson_ply", Source::Assimp, "PLY/Wuson.ply"},
    {"engine_glb", Source::Assimp, "glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb"},
    {"box_gltf", Source::Assimp, "glTF2/BoxTextured-glTF/BoxTextured.gltf"},
    {"spider_fbx", Source::Assimp, "FBX/spider.fbx"},
    {"fels_3ds", Source::Assimp, "3DS/fels.3ds"},
    {"duck_dae", Source::Assimp, "Collada/duck.dae"},
};

// Names the case in test listings instead of dumping its bytes.
void PrintTo(const RealFile& file, std::ostream* out) {
    *out << file.path;
}

class RealFiles : public testing::TestWithParam<RealFile> {};

TEST_P(RealFiles, LoadConsistentlyAndAgreeWithTheirSourceLibrary) {
    const std::string path = pathOf(GetParam());
    if (!exists(path)) GTEST_SKIP() << path << " is not installed";
    const LoadResult result = loadFile(path, LoadOptions());
    Document& doc = *result.document;

    const CheckResult check = checkDocument(doc);
    EXPECT_TRUE(check.ok()) << check.problemCount << " problems, first: "
                            << (check.problems.empty() ? "" : check.problems.front());
    EXPECT_GT(check.references, 0);

    long triangles = 0;
    bool vertexColors = false;
    for (const auto& mesh : doc.scene->meshes) {
        triangles += vertexCount(*mesh) / 3;
        vertexColors = vertexColors || !mesh->vnc.empty();
    }
    const std::string extension = path.substr(path.rfind('.'));
    if (extension == ".step" || extension == ".iges" || extension == ".brep") {
        const CadFigures expected = cadFigures(path, result.deflection);
        EXPECT_EQ(doc.topo->faces.size(), expected.faces);
        EXPECT_EQ(doc.topo->edges.size(), expected.edges);
        EXPECT_EQ(doc.topo->vertices.size(), expected.vertices);
        EXPECT_EQ(triangles, expected.triangles);
        EXPECT_EQ(doc.resources->primitivesA.size(), expected.faces);
        EXPECT_EQ(doc.resources->primitivesB.size(), expected.edges);
        EXPECT_GT(result.deflection, 0);
    } else {
        const MeshFigures expected = meshFigures(path);
        ASSERT_GT(expected.nodes, 0);
        EXPECT_EQ(doc.topo->nodes.size(), expected.nodes);
        EXPECT_EQ(doc.scene->meshes.size(), expected.meshUses);
        EXPECT_EQ(triangles, expected.triangles);
        EXPECT_EQ(vertexColors, expected.vertexColors);
        EXPECT_EQ(doc.topo->faces.size(), 0) << "mesh files bring no boundary representation";
    }
    EXPECT_TRUE(doc.scene->boxes.getValue(0).valid);
    EXPECT_STREQ(doc.info->file(), std::wstring(path.begin(), path.end()).c_str());
    expectSameAfterSnapshot(doc);
}

// A viewer's world has Z up: files defined as Y-up stand upright through their root's
// placement, files without a convention keep their coordinates.
TEST(MeshFiles, StandUprightWhereTheirFormatIsYUp) {
    for (const auto& [file, yUp] :
         {std::pair<const char*, bool>{"Collada/duck.dae", true}, {"OBJ/WusonOBJ.obj", false}}) {
        const std::string path = assimpFile(file);
        if (!exists(path)) GTEST_SKIP() << path << " is not installed";
        const LoadResult loaded = loadFile(path, LoadOptions());
        const auto& root = loaded.document->scene->transforms.getValue(0).matrix;
        SCOPED_TRACE(path);
        // Where the file's Y axis points in the world (column 1 of the root's placement; the
        // duck's root also scales).
        EXPECT_EQ(root[6] > 0.0f, yUp);
        EXPECT_EQ(root[5] > 0.0f, !yUp);
    }
}

INSTANTIATE_TEST_SUITE_P(Files, RealFiles, testing::ValuesIn(files),
                         [](const testing::TestParamInfo<RealFile>& info) {
                             return std::string(info.param.name);
                         });

} // namespace
} // namespace vekhost::test
