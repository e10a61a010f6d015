#include "Images.h"

#include <stb_image.h>
#include <stb_image_write.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>

namespace vekview {

namespace {
constexpr int largestSide = 8192;

struct StbFree {
    void operator()(unsigned char* pixels) const { stbi_image_free(pixels); }
};
} // namespace

Image readTextureImage(const std::string& path) {
    int width = 0;
    int height = 0;
    int channels = 0;
    // A header may claim any size; what no texture unit takes is not decoded at all.
    if (!stbi_info(path.c_str(), &width, &height, &channels)) {
        const char* reason = stbi_failure_reason();
        throw std::runtime_error(reason ? reason : "cannot read the image");
    }
    if (width > largestSide || height > largestSide)
        throw std::runtime_error("image larger than " + std::to_string(largestSide) +
                                 " pixels each way");
    stbi_set_flip_vertically_on_load_thread(1);
    std::unique_ptr<unsigned char, StbFree> pixels(
        stbi_load(path.c_str(), &width, &height, &channels, 4));
    if (!pixels) {
        const char* reason = stbi_failure_reason();
        throw std::runtime_error(reason ? reason : "cannot read the image");
    }
    Image image;
    image.width = width;
    image.height = height;
    image.rgba.assign(pixels.get(), pixels.get() + static_cast<std::size_t>(width) *
                                                       static_cast<std::size_t>(height) * 4);
    return image;
}

void writePng(const std::string& path, const Image& image) {
    if (image.width < 1 || image.height < 1 || image.width > std::numeric_limits<int>::max() / 4 ||
        image.rgba.size() !=
            static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height) * 4)
        throw std::runtime_error("no picture to write");
    // stb reports no cause; opening the file first names the usual ones.
    std::FILE* probe = std::fopen(path.c_str(), "wb");
    if (!probe) throw std::runtime_error(std::strerror(errno));
    std::fclose(probe);
    if (!stbi_write_png(path.c_str(), image.width, image.height, 4, image.rgba.data(),
                        image.width * 4))
        throw std::runtime_error("cannot write the PNG file");
}

} // namespace vekview
