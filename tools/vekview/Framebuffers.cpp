#include "Framebuffers.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace vekview {

namespace {
gl::Renderbuffer storage(GLenum format, int width, int height) {
    gl::Renderbuffer buffer = gl::makeRenderbuffer();
    glBindRenderbuffer(GL_RENDERBUFFER, buffer.get());
    glRenderbufferStorage(GL_RENDERBUFFER, format, width, height);
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    return buffer;
}

void checkComplete(const char* what) {
    const GLenum status = glCheckFramebufferStatus(GL_FRAMEBUFFER);
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    if (status != GL_FRAMEBUFFER_COMPLETE)
        throw gl::Error(std::string("the driver takes no ") + what + " framebuffer (status " +
                        std::to_string(status) + ")");
}

} // namespace

void ColorTarget::resize(int width, int height) {
    if (frame && width == size[0] && height == size[1]) return;
    frame = gl::makeFramebuffer();
    color = storage(GL_RGBA8, width, height);
    depthStencil = storage(GL_DEPTH24_STENCIL8, width, height);
    glBindFramebuffer(GL_FRAMEBUFFER, frame.get());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, color.get());
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER,
                              depthStencil.get());
    checkComplete("colour");
    size[0] = width;
    size[1] = height;
}

void ColorTarget::bind() const {
    glBindFramebuffer(GL_FRAMEBUFFER, frame.get());
    glViewport(0, 0, size[0], size[1]);
}

Image ColorTarget::read() const {
    Image image;
    image.width = size[0];
    image.height = size[1];
    const std::size_t row = static_cast<std::size_t>(size[0]) * 4;
    image.rgba.resize(row * static_cast<std::size_t>(size[1]));
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.get());
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, size[0], size[1], GL_RGBA, GL_UNSIGNED_BYTE, image.rgba.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    // OpenGL reads from the bottom row up.
    std::vector<std::uint8_t> swap(row);
    for (std::size_t top = 0, bottom = static_cast<std::size_t>(size[1]) - 1; top < bottom;
         ++top, --bottom) {
        std::memcpy(swap.data(), &image.rgba[top * row], row);
        std::memcpy(&image.rgba[top * row], &image.rgba[bottom * row], row);
        std::memcpy(&image.rgba[bottom * row], swap.data(), row);
    }
    return image;
}

void IdTarget::resize(int width, int height) {
    if (frame && width == size[0] && height == size[1]) return;
    frame = gl::makeFramebuffer();
    glBindFramebuffer(GL_FRAMEBUFFER, frame.get());
    for (GLenum i = 0; i < 2; ++i) {
        targets[i] = storage(GL_RG32UI, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0 + i, GL_RENDERBUFFER,
                                  targets[i].get());
    }
    depthBuffer = storage(GL_DEPTH_COMPONENT32F, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER,
                              depthBuffer.get());
    const GLenum both[2] = {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1};
    glDrawBuffers(2, both);
    checkComplete("picking");
    size[0] = width;
    size[1] = height;
}

void IdTarget::bind() const {
    glBindFramebuffer(GL_FRAMEBUFFER, frame.get());
    glViewport(0, 0, size[0], size[1]);
}

IdBlock IdTarget::read(int target, int x, int y, int radius) const {
    IdBlock block;
    block.x0 = std::max(0, x - radius);
    block.y0 = std::max(0, y - radius);
    block.width = std::max(0, std::min(size[0], x + radius + 1) - block.x0);
    block.height = std::max(0, std::min(size[1], y + radius + 1) - block.y0);
    if (block.width == 0 || block.height == 0 || target < 0 || target > 1) return block;
    const auto pixels =
        static_cast<std::size_t>(block.width) * static_cast<std::size_t>(block.height);
    block.ids.resize(2 * pixels);
    block.depths.resize(pixels);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, frame.get());
    glReadBuffer(GL_COLOR_ATTACHMENT0 + static_cast<GLenum>(target));
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(block.x0, block.y0, block.width, block.height, GL_RG_INTEGER, GL_UNSIGNED_INT,
                 block.ids.data());
    glReadPixels(block.x0, block.y0, block.width, block.height, GL_DEPTH_COMPONENT, GL_FLOAT,
                 block.depths.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
    return block;
}

std::array<std::uint32_t, 2> IdBlock::id(int x, int y) const {
    if (x < x0 || y < y0 || x >= x0 + width || y >= y0 + height) return {0, 0};
    const auto i = static_cast<std::size_t>(y - y0) * static_cast<std::size_t>(width) +
                   static_cast<std::size_t>(x - x0);
    return {ids[2 * i], ids[2 * i + 1]};
}

float IdBlock::depth(int x, int y) const {
    if (x < x0 || y < y0 || x >= x0 + width || y >= y0 + height) return 1;
    return depths[static_cast<std::size_t>(y - y0) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x - x0)];
}

} // namespace vekview
