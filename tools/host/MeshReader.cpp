#include "MeshReader.h"

#include <assimp/Importer.hpp>
#include <assimp/ProgressHandler.hpp>
#include <assimp/material.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#include "LoadError.h"
#include "MeshAnimation.h"
#include "MeshFiles.h"
#include "MeshPoints.h"
#include "Text.h"

namespace vekhost {

namespace {
// Assimp reports reading as its first half and post-processing as its second; each is a
// phase of its own here.
class ProgressAdapter : public Assimp::ProgressHandler {
public:
    explicit ProgressAdapter(Progress& bar) : bar(bar) {}
    bool Update(float percentage) override {
        if (percentage >= 0) bar.update(2.0 * (percentage - start));
        return true;
    }
    void startPostProcessing() { start = 0.5; }

private:
    Progress& bar;
    double start = 0.0;
};

// The data model's world has Z up, as CAD files do. glTF is Y-up by definition and Assimp
// turns Collada files to Y-up whatever they declare, so those are stood upright by the root's
// placement; other mesh formats carry no convention and stay as stored.
Matrix uprightPlacement(const std::string& format) {
    Matrix upright;
    if (format != "GLTF" && format != "GLB" && format != "DAE") return upright;
    upright.m[5] = 0; // Y goes to Z
    upright.m[6] = 1;
    upright.m[9] = -1; // Z goes to -Y
    upright.m[10] = 0;
    return upright;
}

veksg::Color4 toColor(const aiColor4D& c) {
    return veksg::Color4(c.r, c.g, c.b, c.a);
}

veksg::MMaterial toMaterial(const aiMaterial& source) {
    veksg::MMaterial material = materialFromColor(0.7f, 0.7f, 0.7f, 1.0f);
    aiColor4D color;
    if (aiGetMaterialColor(&source, AI_MATKEY_COLOR_DIFFUSE, &color) == AI_SUCCESS)
        material.diffuse = toColor(color);
    if (aiGetMaterialColor(&source, AI_MATKEY_COLOR_AMBIENT, &color) == AI_SUCCESS)
        material.ambient = toColor(color);
    if (aiGetMaterialColor(&source, AI_MATKEY_COLOR_SPECULAR, &color) == AI_SUCCESS)
        material.specular = toColor(color);
    if (aiGetMaterialColor(&source, AI_MATKEY_COLOR_EMISSIVE, &color) == AI_SUCCESS)
        material.emission = toColor(color);
    float value = 0;
    if (aiGetMaterialFloat(&source, AI_MATKEY_SHININESS, &value) == AI_SUCCESS && value > 0)
        material.shininess = value;
    if (aiGetMaterialFloat(&source, AI_MATKEY_OPACITY, &value) == AI_SUCCESS)
        material.diffuse[3] = value;
    return material;
}

// Three vertices per triangle, in the layout the mesh's colours or texture call for.
template <typename Vertex>
void copyTriangles(const aiMesh& source, std::vector<Vertex>& out) {
    out.reserve(3 * static_cast<std::size_t>(source.mNumFaces));
    const aiVector3D none(0, 0, 0);
    for (unsigned f = 0; f < source.mNumFaces; ++f) {
        const aiFace& face = source.mFaces[f];
        if (face.mNumIndices != 3) continue;
        for (unsigned k = 0; k < 3; ++k) {
            const unsigned index = face.mIndices[k];
            const aiVector3D& p = source.mVertices[index];
            const aiVector3D& n = source.mNormals ? source.mNormals[index] : none;
            Vertex v{};
            v.vertex[0] = p.x;
            v.vertex[1] = p.y;
            v.vertex[2] = p.z;
            v.normal[0] = n.x;
            v.normal[1] = n.y;
            v.normal[2] = n.z;
            if constexpr (std::is_same_v<Vertex, veksg::VNC>) {
                const aiColor4D& c = source.mColors[0][index];
                v.color[0] = c.r;
                v.color[1] = c.g;
                v.color[2] = c.b;
                v.color[3] = c.a;
            } else if constexpr (std::is_same_v<Vertex, veksg::VNT>) {
                const aiVector3D& t = source.mTextureCoords[0][index];
                v.texture[0] = t.x;
                v.texture[1] = t.y;
            }
            out.push_back(v);
        }
    }
}

std::shared_ptr<PartGeometry> toPart(const aiMesh& source,
                                     const std::shared_ptr<veksg::Texture>& texture) {
    auto part = std::make_shared<PartGeometry>();
    // Each vertex once, not once per triangle that uses it.
    static_assert(sizeof(aiVector3D) == 3 * sizeof(float), "Assimp built with float vertices");
    if (source.mNumVertices > 0)
        part->bounds = fittedBox({{&source.mVertices[0].x, source.mNumVertices, 3}});
    // Sorted by primitive type, a mesh holds triangles, lines or points, one kind only.
    if (source.mPrimitiveTypes & aiPrimitiveType_TRIANGLE) {
        auto mesh = std::make_shared<veksg::Mesh>();
        if (texture && source.HasTextureCoords(0)) {
            copyTriangles(source, mesh->vnt);
            part->texture = texture;
        } else if (source.HasVertexColors(0)) {
            copyTriangles(source, mesh->vnc);
        } else {
            copyTriangles(source, mesh->vn);
        }
        part->mesh = std::move(mesh);
    } else if (source.mPrimitiveTypes & aiPrimitiveType_LINE) {
        auto lines = std::make_shared<veksg::Polyline>();
        for (unsigned f = 0; f < source.mNumFaces; ++f) {
            const aiFace& face = source.mFaces[f];
            for (unsigned k = 0; face.mNumIndices == 2 && k < 2; ++k) {
                const aiVector3D& p = source.mVertices[face.mIndices[k]];
                lines->points.emplace_back(p.x, p.y, p.z);
            }
        }
        part->lines = std::move(lines);
    } else if (source.mPrimitiveTypes & aiPrimitiveType_POINT) {
        part->points = pointsOf(source);
        // The box comes from the points kept.
        part->bounds = OrientedBox();
    }
    return part;
}

// Assimp takes an ASCII STL file that was cut short for a whole one.
void checkStlComplete(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::string text(512, '\0');
    in.read(&text[0], 84);
    const auto head = static_cast<std::size_t>(in.gcount());
    std::string start = text.substr(0, std::min<std::size_t>(head, 5));
    for (char& c : start)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (start != "solid") return;
    in.seekg(0, std::ios::end);
    const auto size = static_cast<std::uint64_t>(in.tellg());
    // A binary file may begin with "solid" as well; its triangle count tells it apart.
    if (head == 84) {
        const auto* count = reinterpret_cast<const unsigned char*>(&text[80]);
        const std::uint64_t triangles =
            count[0] | count[1] << 8 | count[2] << 16 | static_cast<std::uint64_t>(count[3]) << 24;
        if (84 + 50 * triangles == size) return;
    }
    const std::uint64_t tail = std::min<std::uint64_t>(size, text.size());
    in.seekg(static_cast<std::streamoff>(size - tail));
    in.read(&text[0], static_cast<std::streamsize>(tail));
    text.resize(static_cast<std::size_t>(in.gcount()));
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (text.find("endsolid") == std::string::npos)
        throw LoadError("truncated ASCII STL file (no endsolid)");
}

class MeshReader : public Reader {
public:
    explicit MeshReader(std::string path) : path(std::move(path)) {
        name = std::filesystem::path(this->path).extension().string().substr(1);
        for (char& c : name)
            c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }

    const char* format() const override { return name.c_str(); }

    void read(Progress& progress) override {
        if (name == "STL") checkStlComplete(path);
        progressAdapter = new ProgressAdapter(progress);
        importer.SetProgressHandler(progressAdapter);
        fileLog = new FileLog;
        importer.SetIOHandler(fileLog);
        scene = importer.ReadFile(path, 0);
        failIfEmpty("not a readable mesh file");
        // Validation refuses meshes without faces; points are what a point cloud has. The scene
        // stays the importer's, which also frees the faces added to it.
        facePointClouds(const_cast<aiScene&>(*scene), fileLog->bytesOpened());
        scene = importer.ApplyPostProcessing(aiProcess_ValidateDataStructure);
        failIfEmpty("not a readable mesh file");
    }

    void tessellate(Progress&) override {
        progressAdapter->startPostProcessing();
        scene = importer.ApplyPostProcessing(aiProcess_Triangulate | aiProcess_GenSmoothNormals |
                                             aiProcess_SortByPType);
        failIfEmpty("could not triangulate the meshes");
    }

    void fill(DocumentBuilder& builder) override {
        builder.setInfo(meshSourceInfo(*scene, path, name, *fileLog, texturesOf));
        parts.resize(scene->mNumMeshes);
        materials.resize(scene->mNumMaterials);
        textures.resize(scene->mNumMaterials);
        const Matrix root = uprightPlacement(name);
        walk(builder, *scene->mRootNode, -1, root);
        builder.setAnimation(sampleAnimation(*scene, nodes, root));
    }

private:
    void failIfEmpty(const char* cause) const {
        if (scene && scene->mRootNode) return;
        const std::string reason = importer.GetErrorString();
        throw LoadError(reason.empty() ? cause : reason);
    }

    void walk(DocumentBuilder& builder, const aiNode& source, int parent,
              const Matrix& parentWorld) {
        const Matrix world = parentWorld * fromAssimp(source.mTransformation);
        const int node = builder.addNode(wideFromUtf8(source.mName.C_Str()), parent, world);
        nodes.push_back({&source, parent, world});
        for (unsigned i = 0; i < source.mNumMeshes; ++i) {
            const unsigned index = source.mMeshes[i];
            if (index >= scene->mNumMeshes) continue;
            const aiMesh& mesh = *scene->mMeshes[index];
            auto& part = parts[index];
            if (!part) part = toPart(mesh, textureOf(mesh.mMaterialIndex));
            const PartKeys keys = builder.addPart(node, part, materialOf(mesh.mMaterialIndex));
            if (mesh.mMaterialIndex < texturesOf.size())
                builder.useFiles(keys.mesh, texturesOf[mesh.mMaterialIndex]);
        }
        for (unsigned i = 0; i < source.mNumChildren; ++i)
            walk(builder, *source.mChildren[i], node, world);
    }

    const veksg::MMaterial& materialOf(unsigned index) {
        static const veksg::MMaterial fallback = materialFromColor(0.7f, 0.7f, 0.7f, 1.0f);
        if (index >= materials.size()) return fallback;
        auto& material = materials[index];
        if (!material.valid) material = toMaterial(*scene->mMaterials[index]);
        return material;
    }

    // The diffuse image of a material as a path beside the file; null for none, and for
    // images held inside the file, which have no path of their own.
    std::shared_ptr<veksg::Texture> textureOf(unsigned index) {
        if (index >= scene->mNumMaterials) return nullptr;
        auto& texture = textures[index];
        if (texture) return *texture;
        texture = std::shared_ptr<veksg::Texture>();
        aiString file;
        if (scene->mMaterials[index]->GetTexture(aiTextureType_DIFFUSE, 0, &file) != AI_SUCCESS ||
            file.length == 0 || file.data[0] == '*')
            return nullptr;
        std::filesystem::path image = std::filesystem::u8path(file.C_Str());
        if (image.is_relative()) image = std::filesystem::path(path).parent_path() / image;
        *texture = std::make_shared<veksg::Texture>();
        (*texture)->path = image.lexically_normal().wstring();
        return *texture;
    }

    std::string path;
    std::string name;
    Assimp::Importer importer;
    ProgressAdapter* progressAdapter = nullptr; // owned by the importer
    FileLog* fileLog = nullptr;                 // owned by the importer
    const aiScene* scene = nullptr;
    // The scene's nodes by their keys, and each material's textures by their external file keys.
    std::vector<SceneNode> nodes;
    std::vector<std::vector<int>> texturesOf;
    std::vector<std::shared_ptr<const PartGeometry>> parts;
    std::vector<veksg::MMaterial> materials;
    std::vector<std::optional<std::shared_ptr<veksg::Texture>>> textures;
};
} // namespace

bool isMeshExtension(const std::string& extension) {
    return extension.size() > 1 && Assimp::Importer().IsExtensionSupported(extension.c_str());
}

std::unique_ptr<Reader> makeMeshReader(const std::string& path) {
    return std::make_unique<MeshReader>(path);
}

} // namespace vekhost
