#include "Legend.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include <cairo.h>

namespace vekload {

std::array<double, 3> rampColour(double value, double low, double high) {
    if (std::isnan(value)) return {0.6, 0.6, 0.6};
    const double t = high != low ? std::clamp((value - low) / (high - low), 0.0, 1.0) : 0.5;
    static constexpr std::array<std::array<double, 3>, 5> stops = {
        {{0.1, 0.2, 0.9}, {0.0, 0.8, 0.9}, {0.1, 0.75, 0.2}, {0.95, 0.85, 0.1}, {0.9, 0.1, 0.1}}};
    const double at = t * (stops.size() - 1);
    const auto below = std::min(static_cast<std::size_t>(at), stops.size() - 2);
    const double share = at - static_cast<double>(below);
    std::array<double, 3> rgb{};
    for (std::size_t i = 0; i < 3; ++i)
        rgb[i] = stops[below][i] + share * (stops[below + 1][i] - stops[below][i]);
    return rgb;
}

namespace {
void fill(Image& image, int x0, int y0, int x1, int y1, const std::array<double, 3>& rgb) {
    for (int y = std::max(0, y0); y < std::min(image.height, y1); ++y)
        for (int x = std::max(0, x0); x < std::min(image.width, x1); ++x) {
            std::uint8_t* pixel =
                &image.rgba[(static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                             static_cast<std::size_t>(x)) *
                            4];
            for (std::size_t i = 0; i < 3; ++i)
                pixel[i] = static_cast<std::uint8_t>(std::lround(255 * rgb[i]));
            pixel[3] = 255;
        }
}

struct Label {
    std::string text;
    double x;
    double y;
};

// Text through cairo, which has the fonts.
void write(Image& image, const std::vector<Label>& labels, double size) {
    cairo_surface_t* surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, image.width, image.height);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        return;
    }
    cairo_t* cr = cairo_create(surface);
    cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, size);
    cairo_set_source_rgb(cr, 0.1, 0.1, 0.1);
    for (const Label& label : labels) {
        cairo_move_to(cr, label.x, label.y);
        cairo_show_text(cr, label.text.c_str());
    }
    cairo_destroy(cr);
    cairo_surface_flush(surface);
    // Cairo's pixels are premultiplied, native-endian ARGB words; the text goes over the
    // picture by its coverage.
    const unsigned char* data = cairo_image_surface_get_data(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            std::uint32_t word = 0;
            std::memcpy(&word,
                        data + static_cast<std::ptrdiff_t>(y) * stride +
                            static_cast<std::ptrdiff_t>(x) * 4,
                        4);
            const unsigned alpha = word >> 24;
            if (alpha == 0) continue;
            std::uint8_t* pixel =
                &image.rgba[(static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                             static_cast<std::size_t>(x)) *
                            4];
            const unsigned ink[3] = {(word >> 16) & 255, (word >> 8) & 255, word & 255};
            for (std::size_t i = 0; i < 3; ++i) {
                const unsigned under = pixel[3] ? pixel[i] : 255;
                pixel[i] = static_cast<std::uint8_t>(ink[i] + under * (255 - alpha) / 255);
            }
            pixel[3] = static_cast<std::uint8_t>(std::max<unsigned>(pixel[3], alpha));
        }
    cairo_surface_destroy(surface);
}
} // namespace

Image renderAnalysis(const vekhost::Document& document, RenderOptions options,
                     const vekhost::PlacedMesh& mesh, const AnalysisColours& colours) {
    const int width = options.width;
    const int strip = std::min(width / 2, std::max(72, width / 4));
    options.width = std::max(1, width - strip);
    options.faceColours = [&](int face, int index, std::array<double, 3>& rgb) {
        if (face < 0 || static_cast<std::size_t>(face) >= mesh.ranges.size()) return false;
        const vekhost::PlacedMesh::Range& range = mesh.ranges[static_cast<std::size_t>(face)];
        if (index < 0 || index >= range.count) return false;
        rgb = rampColour(
            colours.values[static_cast<std::size_t>(range.first) + static_cast<std::size_t>(index)],
            colours.low, colours.high);
        return true;
    };
    const Image model = render(document, options);
    Image image(width, options.height);
    for (int y = 0; y < model.height; ++y)
        std::copy_n(model.pixel(0, y), static_cast<std::size_t>(model.width) * 4,
                    &image.rgba[static_cast<std::size_t>(y) * width * 4]);

    // The ramp, the larger end at the top, with its ends and middle numbered beside it.
    const double lowest = std::min(colours.low, colours.high);
    const double highest = std::max(colours.low, colours.high);
    const double size = std::clamp(options.height / 28.0, 8.0, 18.0);
    const int left = options.width + static_cast<int>(size);
    const int top = static_cast<int>(3 * size);
    const int bottom = options.height - static_cast<int>(2 * size);
    const int barWidth = static_cast<int>(size);
    for (int y = top; y < bottom; ++y) {
        const double t = bottom - 1 > top ? 1.0 - double(y - top) / (bottom - 1 - top) : 0.5;
        fill(image, left, y, left + barWidth, y + 1,
             rampColour(lowest + t * (highest - lowest), colours.low, colours.high));
    }
    const double textX = left + barWidth + size / 2;
    std::vector<Label> labels = {
        {colours.title, static_cast<double>(options.width) + size / 2, 1.5 * size},
        {formatNumber(highest), textX, top + size / 3},
        {formatNumber((lowest + highest) / 2), textX, (top + bottom) / 2.0 + size / 3},
        {formatNumber(lowest), textX, bottom + size / 3}};
    write(image, labels, size);
    return image;
}

} // namespace vekload
