#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "vek2d/SCScene2D.h"

namespace vekhost {

/// How a sheet becomes a page.
struct SheetPicture {
    /// The sheet, a key of `sheets`.
    int sheet = 0;
    /// The size of a PNG in pixels; 0 for the page at `dotsPerMillimetre`.
    int width = 0;
    int height = 0;
    double dotsPerMillimetre = 4;
};

/// An image in memory: `pixels` row after row, premultiplied ARGB in native order.
struct SheetImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

/// The page a sheet is drawn on, in millimetres: a paper sheet's own size (its units are
/// millimetres), or the sheet's extent with a margin fitted to an A3 page.
struct PageSize {
    double width = 0;
    double height = 0;
};
PageSize pageOf(const vek2d::SCScene2D& drawing, int sheet);

/// Draws one sheet into `path`, as PNG, SVG or PDF by the file's extension, all from the
/// same code: entities of hidden layers left out, line weights and dash patterns by their
/// style, hatches filled by the even-odd rule or with their line families, texts in the font
/// fontconfig finds for theirs. Throws std::runtime_error naming the cause.
void drawSheet(const vek2d::SCScene2D& drawing, const std::string& path,
               const SheetPicture& picture);
/// The same picture in memory, `width` by `height` pixels (both needed).
SheetImage drawSheetImage(const vek2d::SCScene2D& drawing, const SheetPicture& picture);

/// Whether `drawSheet` writes files with this one's extension.
bool drawsFileType(const std::string& path);

} // namespace vekhost
