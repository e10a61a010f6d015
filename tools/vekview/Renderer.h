#pragma once

#include <array>

#include "Camera.h"
#include "Document.h"
#include "GpuScene.h"
#include "Shaders.h"

namespace vekview {

/// A cut through the model: what lies on the side the normal points to is taken away,
/// that is every point p with dot(normal, p) > offset.
struct SectionPlane {
    bool active = false;
    Vec3 normal{1, 0, 0};
    double offset = 0;
};

/// What the last frame cost the GPU's input.
struct FrameStats {
    long long triangles = 0;
    long long lineSegments = 0;
    int drawCalls = 0;
};

/// Everything a frame needs besides the document and its GPU copy.
struct FrameSetup {
    const Camera* camera = nullptr;
    int width = 1;
    int height = 1;
    SectionPlane section;
    /// The sphere around the model, for the section's cap.
    Vec3 centre{0, 0, 0};
    double radius = 1;
};

/// Draws a document from the batches in its `SCSceneRT` (Batches.h) into the bound
/// framebuffer: lit faces, edges over them, the section with its caps, the markers of
/// `SCTempGraphics`; and, for picking, what lies under each pixel. Needs a current context.
class Renderer {
public:
    Renderer();

    /// Clears and draws a frame.
    FrameStats draw(const vekhost::Document& document, const GpuScene& gpu,
                    const FrameSetup& setup);
    /// Clears and draws the object keys of faces and edges (IdTarget).
    void drawIds(const vekhost::Document& document, const GpuScene& gpu, const FrameSetup& setup);

private:
    struct Matrices;
    static Matrices matricesOf(const FrameSetup& setup);
    enum class Pass { Shade, Ids, Stencil };
    void faces(const vekhost::Document& document, const GpuScene& gpu, const Matrices& m, Pass pass,
               FrameStats& stats);
    void useFlat(const Matrices& m, const std::array<float, 4>& plane);
    void material(const veksg::SCScene& scene, int key, bool lit);
    void edges(const vekhost::Document& document, const GpuScene& gpu, const Matrices& m, bool ids,
               FrameStats& stats);
    void stencilOfSection(const vekhost::Document& document, const GpuScene& gpu, const Matrices& m,
                          FrameStats& stats);
    void cap(const FrameSetup& setup, const Matrices& m, FrameStats& stats);
    void markers(const vekhost::Document& document, const Matrices& m, FrameStats& stats);
    /// Draws `points` from the scratch buffer with the flat program's current uniforms.
    void scratch(const std::vector<float>& points, GLenum mode);

    Shaders shaders;
    gl::Buffer scratchBuffer;
    gl::VertexArray scratchArray;
};

} // namespace vekview
