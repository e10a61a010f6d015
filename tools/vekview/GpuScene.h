#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "Document.h"
#include "Gl.h"

namespace vekview {

/// The GPU copies of a document's geometry: one vertex buffer per shared `Mesh` and one per
/// shared `Polyline`, however many mesh or polyline keys use it, uploaded as the data model
/// stores them (the `VN`, `VNC` and `VNT` layouts back to back), and one texture per image
/// file. Needs a current context while it lives.
class GpuScene {
public:
    /// A run of one vertex layout inside a mesh's buffer.
    struct Segment {
        gl::VertexArray array;
        /// Where the run starts and how long it is, in the mesh's vertices counted through
        /// its layouts in order.
        int first = 0;
        int count = 0;
        bool colors = false;
        bool texCoords = false;
    };
    struct MeshBuffer {
        gl::Buffer vertices;
        std::vector<Segment> segments;
    };
    struct LineBuffer {
        gl::Buffer points;
        gl::VertexArray array;
        int count = 0;
    };

    /// Uploads everything the document's `SCScene` holds. Images that cannot be read are
    /// left out, each named once in `warnings`; throws gl::Error when the GPU has no room.
    explicit GpuScene(const vekhost::Document& document);

    /// The buffer of a mesh key, null for a key without geometry.
    const MeshBuffer* mesh(int meshKey) const;
    const LineBuffer* lines(int polylineKey) const;
    /// The texture of a mesh key's material, 0 for none.
    GLuint texture(int meshKey) const;

    /// Bytes of vertex and texture data on the GPU.
    std::size_t bytes() const { return uploaded; }
    std::vector<std::string> warnings;

private:
    std::vector<MeshBuffer> meshBuffers;
    std::vector<LineBuffer> lineBuffers;
    std::vector<gl::Texture> textures;
    std::vector<int> meshOfKey;
    std::vector<int> linesOfKey;
    std::vector<int> textureOfKey;
    std::size_t uploaded = 0;

    void uploadMeshes(const veksg::SCScene& scene);
    void uploadLines(const veksg::SCScene& scene);
    void uploadTextures(const veksg::SCScene& scene);
};

} // namespace vekview
