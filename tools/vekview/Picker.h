#pragma once

#include "Document.h"
#include "Framebuffers.h"
#include "GpuScene.h"
#include "Renderer.h"

namespace vekview {

/// What lies under a pixel.
struct Pick {
    bool hit = false;
    int mesh = -1;
    /// -1 for a mesh no face covers (mesh files).
    int face = -1;
    int node = -1;
    /// The surface point under the pixel, in world coordinates.
    Vec3 point{0, 0, 0};
    /// The edge drawn nearest the pixel within a few pixels, -1 for none, and its point there.
    int edge = -1;
    Vec3 edgePoint{0, 0, 0};
};

/// The face of mesh key `mesh` whose `primitivesA` range holds `vertex`: among the faces of
/// the mesh's node, those drawn from that mesh; -1 for none.
int faceAtVertex(const vekhost::Document& document, int mesh, int vertex);
/// The edge of polyline key `polyline` whose `primitivesB` range holds point `point`.
int edgeAtPoint(const vekhost::Document& document, int polyline, int point);

/// Picks through the GPU: the frame is drawn again with object keys and vertex numbers
/// instead of colours (Renderer::drawIds), so a pick is exact to the pixel and sees what the
/// user sees: hidden parts and what the section takes away are not picked.
class Picker {
public:
    /// (x, y) in pixels from the top left of a setup.width x setup.height view.
    Pick pick(const vekhost::Document& document, const GpuScene& gpu, Renderer& renderer,
              const FrameSetup& setup, int x, int y);

private:
    IdTarget target;
};

} // namespace vekview
