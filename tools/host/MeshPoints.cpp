#include "MeshPoints.h"

#include <cmath>
#include <string>

#include "LoadError.h"
#include "PointCloud.h"

namespace vekhost {

void facePointClouds(aiScene& scene, std::uint64_t bytes) {
    for (unsigned m = 0; m < scene.mNumMeshes; ++m) {
        aiMesh* mesh = scene.mMeshes[m];
        if (!mesh || mesh->mNumFaces > 0 || mesh->mFaces || !mesh->mVertices ||
            mesh->mNumVertices == 0)
            continue;
        // Every point takes a byte of input at the very least.
        if (mesh->mNumVertices > bytes)
            throw LoadError("a point cloud claims " + std::to_string(mesh->mNumVertices) +
                            " points, more than the file's " + std::to_string(bytes) +
                            " bytes can hold");
        // The mesh frees them as its own.
        mesh->mFaces = new aiFace[mesh->mNumVertices];
        for (unsigned v = 0; v < mesh->mNumVertices; ++v) {
            mesh->mFaces[v].mIndices = new unsigned[1]{v};
            mesh->mFaces[v].mNumIndices = 1;
        }
        mesh->mNumFaces = mesh->mNumVertices;
        mesh->mPrimitiveTypes = aiPrimitiveType_POINT;
    }
}

std::shared_ptr<veksg::VertexInfo> pointsOf(const aiMesh& mesh) {
    auto buffer = std::make_shared<veksg::VertexInfo>();
    const bool coloured = mesh.HasVertexColors(0);
    buffer->stride = coloured ? points::colouredStride : points::plainStride;
    std::size_t count = 0;
    for (unsigned f = 0; f < mesh.mNumFaces; ++f)
        count += mesh.mFaces[f].mNumIndices == 1 ? 1 : 0;
    buffer->data.reset(new float[count * static_cast<std::size_t>(buffer->stride)]);
    float* out = buffer->data.get();
    for (unsigned f = 0; f < mesh.mNumFaces; ++f) {
        const aiFace& face = mesh.mFaces[f];
        if (face.mNumIndices != 1 || face.mIndices[0] >= mesh.mNumVertices) continue;
        const aiVector3D& p = mesh.mVertices[face.mIndices[0]];
        // Scanners write a point that is not a number where a ray found nothing.
        if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) continue;
        *out++ = p.x;
        *out++ = p.y;
        *out++ = p.z;
        if (!coloured) continue;
        const aiColor4D& c = mesh.mColors[0][face.mIndices[0]];
        *out++ = c.r;
        *out++ = c.g;
        *out++ = c.b;
        *out++ = c.a;
    }
    buffer->count = static_cast<int>((out - buffer->data.get()) / buffer->stride);
    return buffer;
}

} // namespace vekhost
