#include "Png.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#ifdef VEKLOAD_HAVE_PNG
#include <png.h>
#endif

namespace vekload {

#ifdef VEKLOAD_HAVE_PNG
namespace {
using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File openFile(const std::string& path, const char* mode) {
    File file(std::fopen(path.c_str(), mode), &std::fclose);
    if (!file) throw std::runtime_error("cannot open " + path + ": " + std::strerror(errno));
    return file;
}

png_image header(int width, int height) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGBA;
    return image;
}
} // namespace

bool pngSupported() {
    return true;
}

void writePng(const std::string& path, const Image& picture) {
    File file = openFile(path, "wb");
    png_image image = header(picture.width, picture.height);
    if (!png_image_write_to_stdio(&image, file.get(), 0, picture.rgba.data(), 0, nullptr))
        throw std::runtime_error("cannot write " + path + ": " + image.message);
    // Buffered bytes may still fail to reach the disk.
    if (std::fclose(file.release()) != 0)
        throw std::runtime_error("cannot write " + path + ": " + std::strerror(errno));
}

Image readPng(const std::string& path) {
    File file = openFile(path, "rb");
    png_image image = header(0, 0);
    if (!png_image_begin_read_from_stdio(&image, file.get()))
        throw std::runtime_error("cannot read " + path + ": " + image.message);
    image.format = PNG_FORMAT_RGBA;
    Image picture;
    try {
        picture = Image(static_cast<int>(image.width), static_cast<int>(image.height));
    } catch (...) {
        png_image_free(&image);
        throw;
    }
    if (!png_image_finish_read(&image, nullptr, picture.rgba.data(), 0, nullptr))
        throw std::runtime_error("cannot read " + path + ": " + image.message);
    return picture;
}
#else
namespace {
[[noreturn]] void unsupported() {
    throw std::runtime_error("this vekload was built without libpng");
}
} // namespace

bool pngSupported() {
    return false;
}

void writePng(const std::string&, const Image&) {
    unsupported();
}

Image readPng(const std::string&) {
    unsupported();
}
#endif

} // namespace vekload
