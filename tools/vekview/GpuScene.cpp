#include "GpuScene.h"

#include <string>
#include <unordered_map>

#include "Images.h"
#include "Shaders.h"
#include "Text.h"

namespace vekview {

namespace {
// Offsets into the interleaved layouts, which OpenGL reads as they are.
template <typename Layout>
void pointAttributes(std::size_t base) {
    const auto stride = static_cast<GLsizei>(sizeof(Layout));
    const auto at = [base](std::size_t offset) {
        return reinterpret_cast<const void*>(base + offset); // NOLINT(performance-no-int-to-ptr)
    };
    glEnableVertexAttribArray(attribPosition);
    glVertexAttribPointer(attribPosition, 3, GL_FLOAT, GL_FALSE, stride,
                          at(offsetof(Layout, vertex)));
    glEnableVertexAttribArray(attribNormal);
    glVertexAttribPointer(attribNormal, 3, GL_FLOAT, GL_FALSE, stride,
                          at(offsetof(Layout, normal)));
    if constexpr (std::is_same_v<Layout, veksg::VNC>) {
        glEnableVertexAttribArray(attribColor);
        glVertexAttribPointer(attribColor, 4, GL_FLOAT, GL_FALSE, stride,
                              at(offsetof(Layout, color)));
    }
    if constexpr (std::is_same_v<Layout, veksg::VNT>) {
        glEnableVertexAttribArray(attribTexCoord);
        glVertexAttribPointer(attribTexCoord, 2, GL_FLOAT, GL_FALSE, stride,
                              at(offsetof(Layout, texture)));
    }
}

template <typename Layout>
void addSegment(GpuScene::MeshBuffer& buffer, const std::vector<Layout>& vertices,
                std::size_t& offset, int& first) {
    if (vertices.empty()) return;
    const std::size_t size = vertices.size() * sizeof(Layout);
    glBufferSubData(GL_ARRAY_BUFFER, static_cast<GLintptr>(offset), static_cast<GLsizeiptr>(size),
                    vertices.data());
    GpuScene::Segment segment;
    segment.array = gl::makeVertexArray();
    glBindVertexArray(segment.array.get());
    pointAttributes<Layout>(offset);
    glBindVertexArray(0);
    segment.first = first;
    segment.count = static_cast<int>(vertices.size());
    segment.colors = std::is_same_v<Layout, veksg::VNC>;
    segment.texCoords = std::is_same_v<Layout, veksg::VNT>;
    buffer.segments.push_back(std::move(segment));
    offset += size;
    first += static_cast<int>(vertices.size());
}

// The buffer or texture number a key maps to, -1 for none.
int indexIn(const std::vector<int>& byKey, int key) {
    return key >= 0 && static_cast<std::size_t>(key) < byKey.size()
               ? byKey[static_cast<std::size_t>(key)]
               : -1;
}
} // namespace

GpuScene::GpuScene(const vekhost::Document& document) {
    const veksg::SCScene& scene = *document.scene;
    while (glGetError() != GL_NO_ERROR) {
    }
    uploadMeshes(scene);
    uploadLines(scene);
    uploadTextures(scene);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    // Drivers report a buffer they could not make only here; drawing it would show nothing.
    if (glGetError() == GL_OUT_OF_MEMORY)
        throw gl::Error("the graphics memory has no room for the model's " +
                        std::to_string(uploaded >> 20) + " MiB");
}

void GpuScene::uploadMeshes(const veksg::SCScene& scene) {
    std::unordered_map<const veksg::Mesh*, int> shared;
    meshOfKey.assign(static_cast<std::size_t>(scene.meshes.size()), -1);
    for (int key = 0; key < scene.meshes.size(); ++key) {
        const veksg::Mesh* mesh = scene.meshes.getValue(key).get();
        if (!mesh) continue;
        const auto [found, added] = shared.emplace(mesh, static_cast<int>(meshBuffers.size()));
        meshOfKey[static_cast<std::size_t>(key)] = found->second;
        if (!added) continue;
        const std::size_t size = mesh->vn.size() * sizeof(veksg::VN) +
                                 mesh->vnc.size() * sizeof(veksg::VNC) +
                                 mesh->vnt.size() * sizeof(veksg::VNT);
        MeshBuffer buffer;
        buffer.vertices = gl::makeBuffer();
        glBindBuffer(GL_ARRAY_BUFFER, buffer.vertices.get());
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size), nullptr, GL_STATIC_DRAW);
        std::size_t offset = 0;
        int first = 0;
        addSegment(buffer, mesh->vn, offset, first);
        addSegment(buffer, mesh->vnc, offset, first);
        addSegment(buffer, mesh->vnt, offset, first);
        uploaded += size;
        meshBuffers.push_back(std::move(buffer));
    }
}

void GpuScene::uploadLines(const veksg::SCScene& scene) {
    std::unordered_map<const veksg::Polyline*, int> shared;
    linesOfKey.assign(static_cast<std::size_t>(scene.polylines.size()), -1);
    for (int key = 0; key < scene.polylines.size(); ++key) {
        const veksg::Polyline* polyline = scene.polylines.getValue(key).get();
        if (!polyline || polyline->points.empty()) continue;
        const auto [found, added] = shared.emplace(polyline, static_cast<int>(lineBuffers.size()));
        linesOfKey[static_cast<std::size_t>(key)] = found->second;
        if (!added) continue;
        LineBuffer buffer;
        buffer.points = gl::makeBuffer();
        buffer.array = gl::makeVertexArray();
        buffer.count = static_cast<int>(polyline->points.size());
        const std::size_t size = polyline->points.size() * sizeof(veksg::Point3);
        glBindVertexArray(buffer.array.get());
        glBindBuffer(GL_ARRAY_BUFFER, buffer.points.get());
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(size),
                     polyline->points.front().data(), GL_STATIC_DRAW);
        glEnableVertexAttribArray(attribPosition);
        glVertexAttribPointer(attribPosition, 3, GL_FLOAT, GL_FALSE,
                              static_cast<GLsizei>(sizeof(veksg::Point3)), nullptr);
        glBindVertexArray(0);
        uploaded += size;
        lineBuffers.push_back(std::move(buffer));
    }
}

void GpuScene::uploadTextures(const veksg::SCScene& scene) {
    static_assert(sizeof(veksg::Point3) == 3 * sizeof(float), "points are three packed floats");
    std::map<std::wstring, int> byPath;
    textureOfKey.assign(static_cast<std::size_t>(scene.meshes.size()), -1);
    for (int key = 0; key < scene.textures.size() && key < scene.meshes.size(); ++key) {
        const auto& texture = scene.textures.getValue(key);
        if (!texture || texture->path.empty()) continue;
        const auto [found, added] = byPath.emplace(texture->path, -1);
        if (added) {
            const std::string path = vekhost::utf8FromWide(texture->path);
            try {
                const Image image = readTextureImage(path);
                gl::Texture handle = gl::makeTexture();
                glBindTexture(GL_TEXTURE_2D, handle.get());
                glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
                glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, image.width, image.height, 0, GL_RGBA,
                             GL_UNSIGNED_BYTE, image.rgba.data());
                glGenerateMipmap(GL_TEXTURE_2D);
                glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR_MIPMAP_LINEAR);
                glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
                glBindTexture(GL_TEXTURE_2D, 0);
                uploaded += image.rgba.size() * 4 / 3;
                found->second = static_cast<int>(textures.size());
                textures.push_back(std::move(handle));
            } catch (const std::exception& error) {
                warnings.push_back(path + ": texture not shown: " + error.what());
            }
        }
        textureOfKey[static_cast<std::size_t>(key)] = found->second;
    }
}

const GpuScene::MeshBuffer* GpuScene::mesh(int meshKey) const {
    const int index = indexIn(meshOfKey, meshKey);
    return index >= 0 ? &meshBuffers[static_cast<std::size_t>(index)] : nullptr;
}

const GpuScene::LineBuffer* GpuScene::lines(int polylineKey) const {
    const int index = indexIn(linesOfKey, polylineKey);
    return index >= 0 ? &lineBuffers[static_cast<std::size_t>(index)] : nullptr;
}

GLuint GpuScene::texture(int meshKey) const {
    const int index = indexIn(textureOfKey, meshKey);
    return index >= 0 ? textures[static_cast<std::size_t>(index)].get() : 0;
}

} // namespace vekview
