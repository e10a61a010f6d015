#pragma once

#include <string>

#include "Render.h"

namespace vekload {

/// Whether this build writes PNG files (it needs libpng when it is built).
bool pngSupported();

/// Writes `image` as an 8-bit RGBA PNG file; throws std::runtime_error naming the cause.
void writePng(const std::string& path, const Image& image);
/// Reads any PNG file as 8-bit RGBA; throws std::runtime_error naming the cause.
Image readPng(const std::string& path);

} // namespace vekload
