#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vekview {

/// 8-bit RGBA pixels, row after row from the top.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;
};

/// Reads a PNG, JPEG, BMP, TGA or other image stb_image knows, bottom row first as OpenGL
/// takes textures; throws std::runtime_error naming the cause.
Image readTextureImage(const std::string& path);
/// Writes `image` as a PNG file; throws std::runtime_error naming the cause.
void writePng(const std::string& path, const Image& image);

} // namespace vekview
