#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

#include "Document.h"

// A small software renderer that draws a loaded document from its components alone, the way
// a viewer reads them: it proves the data model carries everything a picture needs.
namespace vekload {

/// 8-bit RGBA pixels, row after row from the top. The background is white with alpha 0, so
/// that a picture shows on any page and "covered" is simply a non-zero alpha.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;

    Image() = default;
    Image(int width, int height);
    const std::uint8_t* pixel(int x, int y) const {
        return &rgba[(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)) *
                     4];
    }
    bool covered(int x, int y) const { return pixel(x, y)[3] != 0; }
};

struct RenderOptions {
    int width = 256;
    int height = 256;
    /// Key of `SCView::orientations`: 0 isometric, 1 front, 2 top, 3 right, 4 back,
    /// 5 bottom, 6 left.
    int view = 0;
    /// Draw the nodes where the animation puts them `time` milliseconds after its start.
    bool timed = false;
    double time = 0;
    /// Colours that replace a face's own (an analysis's): for vertex `index` of the face's
    /// `primitivesA` range, true with `rgb` (0 to 1) set, or false to keep the face's colour.
    std::function<bool(int face, int index, std::array<double, 3>& rgb)> faceColours;
    /// An orientation to draw under instead of the preset `view` (a saved view's): 16
    /// elements, stored as `SCView::orientations` stores them. Empty for the preset.
    std::vector<float> orientation;
    /// Planes, each a point and a normal in the world, that cut the model (faces, edges,
    /// points): what lies on the side the normal points to stays.
    std::vector<std::array<double, 6>> cuts;
    /// World boxes, as min and max corners, that the frame takes in besides the model.
    std::vector<std::array<double, 6>> alsoFit;
    /// Drawn over the finished model (annotations): the picture, and where a world point
    /// lands in it (x right and y down in pixels, z towards the viewer).
    std::function<void(Image&,
                       const std::function<std::array<double, 3>(const std::array<double, 3>&)>&)>
        overlay;
};

/// Pixels kept free on each side when the model is fitted to the picture.
int frameMargin(int width, int height);

/// Draws the document in orthographic projection under the orientation `options.view`:
///
/// - triangles of `SCScene::meshes` in every layout, placed by the `transforms` of the node
///   that `links6a` names, coloured by the diffuse colour of `meshMaterials` (per-vertex
///   colours of `VNC` win), Gouraud-shaded by one light fixed to the viewer;
/// - the edges' line strips (`SCSceneRes::primitivesB` into `SCScene::polylines`) over them,
///   in their `polylineMaterials` colour;
/// - points (`SCSceneRes::primitivesC` into `vertexInfos`) as small squares in their own
///   colours or, without, in the primitive's `color`;
/// - only what `SCSceneRT::visibility` leaves visible, by the host's rule (`vekhost::Visibility`):
///   a node shows when its bit in set 0 and those of every node above it in `SCScene::hierarchy`
///   are set; a face's triangles (`primitivesA`) need its bit in set 2, the triangles of a mesh
///   that no face covers its bit in set 7, an edge its bit in set 3. A missing bit is a
///   cleared one.
///
/// The orientation matrix is stored like a transform, column after column, and takes world
/// coordinates to the viewer's: its rows are the world directions of the picture's right,
/// up and towards the viewer. The view is fitted to the projected corners of the root nodes'
/// `boxes`, centred, with `frameMargin` pixels to spare; at a time, the animated nodes are
/// placed by `vekhost::AnimationPose` and the fit also takes in the room the animation sweeps
/// (`vekhost::animationBounds`), so that every time of one model shares one frame. Throws
/// std::invalid_argument for a
/// view key the document does not hold or a size below one pixel.
Image render(const vekhost::Document& document, const RenderOptions& options);

} // namespace vekload
