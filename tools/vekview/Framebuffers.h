#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "Gl.h"
#include "Images.h"

namespace vekview {

/// An offscreen picture: 8-bit RGBA colour with depth and stencil, for screenshots and for
/// views drawn without a visible window.
class ColorTarget {
public:
    /// Makes the attachments anew when the size changes.
    void resize(int width, int height);
    /// Draws into it from now on, over its whole size.
    void bind() const;
    /// Its pixels, top row first; the background keeps the alpha it was cleared with.
    Image read() const;
    int width() const { return size[0]; }
    int height() const { return size[1]; }

private:
    gl::Framebuffer frame;
    gl::Renderbuffer color;
    gl::Renderbuffer depthStencil;
    int size[2] = {0, 0};
};

/// A square of pixels read back from an IdTarget, clipped to the picture.
struct IdBlock {
    int x0 = 0;
    int y0 = 0;
    int width = 0;
    int height = 0;
    /// Object and vertex per pixel, row after row from the bottom.
    std::vector<std::uint32_t> ids;
    std::vector<float> depths;

    /// Zeros outside the block.
    std::array<std::uint32_t, 2> id(int x, int y) const;
    /// Window depth, 0 to 1; 1 where nothing was drawn or outside the block.
    float depth(int x, int y) const;
};

/// What lies under each pixel: two targets of two unsigned integers (object and vertex),
/// one for faces and one for edges, and a floating-point depth for exact positions.
class IdTarget {
public:
    void resize(int width, int height);
    void bind() const;
    /// The pixels of `target` (0 faces, 1 edges) within `radius` of (x, y), counted from the
    /// picture's bottom left.
    IdBlock read(int target, int x, int y, int radius) const;

private:
    gl::Framebuffer frame;
    gl::Renderbuffer targets[2];
    gl::Renderbuffer depthBuffer;
    int size[2] = {0, 0};
};

} // namespace vekview
