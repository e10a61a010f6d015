#include "DrawingRender.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <stdexcept>

#include "Drawing.h"
#include "FontMatch.h"
#include "Iconv.h"

namespace vekhost {

using drawing::Affine;
using drawing::Kind;

namespace {
constexpr double pointsPerMillimetre = 72 / 25.4;
// Millimetres on paper: the width of weight 0 (DXF's default), the thinnest drawn at all, and
// the lines of pattern fills (ISO 128's thin lines).
constexpr double defaultWidth = 0.25;
constexpr double thinnest = 0.05;
constexpr double hatchLineWidth = 0.18;
// Dash patterns shorter than this on paper would read as a grey line; they are drawn solid.
constexpr double shortestPeriod = 0.5;
constexpr int mostHatchLines = 4000;
constexpr double infinity = std::numeric_limits<double>::infinity();

std::string lowerExtension(const std::string& path) {
    const auto dot = path.find_last_of('.');
    const auto slash = path.find_last_of('/');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
    std::string e = path.substr(dot);
    for (char& c : e)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return e;
}

bool usable(const Affine& m) {
    const double det = m.a * m.d - m.b * m.c;
    return std::isfinite(det) && std::fabs(det) > 1e-300 && std::isfinite(m.e) &&
           std::isfinite(m.f);
}

// The sheet's area in its own units: min x, min y, max x, max y.
std::array<double, 4> areaOf(const vek2d::SCScene2D& d, int sheet) {
    const vek2d::Sheet& s = d.sheets[static_cast<std::size_t>(sheet)];
    std::array<double, 4> a{s.point0[0], s.point0[1], s.point1[0], s.point1[1]};
    if (!s.flag0) {
        // A margin around an extent, so that no line runs along the page's edge.
        const double margin = 0.03 * std::max({a[2] - a[0], a[3] - a[1], 1e-9});
        a = {a[0] - margin, a[1] - margin, a[2] + margin, a[3] + margin};
    }
    return a;
}

// Wide text as cairo takes it; a character UTF-8 cannot hold (a lone surrogate) is dropped.
class Utf8 {
public:
    std::string operator()(const std::wstring& text) {
        return converter.convert(text.data(), text.size() * sizeof(wchar_t), sizeof(wchar_t), {});
    }

private:
    Iconv converter{"UTF-8", "WCHAR_T"};
};

class Painter {
public:
    Painter(cairo_t* context, const vek2d::SCScene2D& drawing, int sheetKey)
        : cr(context), d(drawing), sheet(sheetKey) {
        const auto area = areaOf(d, sheet);
        const PageSize page = pageOf(d, sheet);
        const double width = std::max(area[2] - area[0], 1e-9);
        const double height = std::max(area[3] - area[1], 1e-9);
        scale = std::min(page.width / width, page.height / height);
        // Centred on the page, y pointing down as cairo's does.
        const double left = (page.width - width * scale) / 2;
        const double top = (page.height - height * scale) / 2;
        toPage = {scale, 0, 0, -scale, left - area[0] * scale, top + area[3] * scale};
        hiddenEntity.assign(d.entities.size(), false);
        const auto& layers = drawing::layerEntities(d);
        for (int layer = 0; layer < layers.size(); ++layer) {
            const bool hidden = static_cast<std::size_t>(layer) < d.values.size() &&
                                (d.values[static_cast<std::size_t>(layer)] & drawing::hiddenLayer);
            for (const int e : layers.getValue(layer))
                if (hidden && e >= 0 && static_cast<std::size_t>(e) < hiddenEntity.size())
                    hiddenEntity[static_cast<std::size_t>(e)] = true;
        }
    }

    void paint(const PageSize& page) {
        const veksg::Color4& background = d.sheets[static_cast<std::size_t>(sheet)].color;
        cairo_set_source_rgba(cr, background[0], background[1], background[2], background[3]);
        cairo_rectangle(cr, 0, 0, page.width, page.height);
        cairo_fill(cr);
        cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
        for (std::size_t e = 0; e < d.entities.size(); ++e) {
            const vek2d::Entity& entity = d.entities[e];
            const int view = entity.value0;
            if (hiddenEntity[e] || view < 0 || view >= drawing::viewSheet(d).size() ||
                drawing::viewSheet(d).getValue(view) != sheet)
                continue;
            if (entity.value1 < 0 || static_cast<std::size_t>(entity.value1) >= d.colors.size())
                continue;
            const veksg::Color4& c = d.colors[static_cast<std::size_t>(entity.value1)].color;
            cairo_set_source_rgba(cr, c[0], c[1], c[2], c[3]);
            const Affine placement = toPage * Affine::fromMatrix(entity.matrix);
            if (!usable(placement)) continue;
            switch (drawing::kindOf(entity.style)) {
            case Kind::Polyline:
                polyline(entity, placement);
                break;
            case Kind::Ellipse:
                if (inRange(entity.value2, d.ellipses.size())) ellipse(entity, placement);
                break;
            case Kind::Hatch:
                if (inRange(entity.value2, d.hatches.size())) hatch(entity, placement);
                break;
            case Kind::Text:
                if (inRange(entity.value2, static_cast<std::size_t>(d.texts.size()))) text(entity);
                break;
            }
        }
    }

private:
    static bool inRange(int key, std::size_t size) {
        return key >= 0 && static_cast<std::size_t>(key) < size;
    }

    void moveOrLine(const Affine& m, double x, double y, bool first) {
        const auto p = m.apply(x, y);
        if (first)
            cairo_move_to(cr, p[0], p[1]);
        else
            cairo_line_to(cr, p[0], p[1]);
    }

    void stroke(const vek2d::Entity& entity) {
        const int weight = drawing::weightOf(entity.style);
        const double width = weight == 0 ? defaultWidth : std::max(weight / 100.0, thinnest);
        cairo_set_line_width(cr, width);
        const drawing::Dashes dashes = drawing::dashLengths(drawing::patternOf(entity.style));
        double period = 0;
        double lengths[6] = {};
        bool dots = false;
        for (int i = 0; i < dashes.count; ++i) {
            lengths[i] = dashes.lengths[static_cast<std::size_t>(i)] * entity.scale * scale;
            period += lengths[i];
            dots = dots || lengths[i] == 0;
        }
        if (dashes.count > 0 && std::isfinite(period) && period >= shortestPeriod) {
            cairo_set_dash(cr, lengths, dashes.count, 0);
            cairo_set_line_cap(cr, dots ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
        } else {
            cairo_set_dash(cr, nullptr, 0, 0);
            cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
        }
        cairo_stroke(cr);
    }

    void polyline(const vek2d::Entity& entity, const Affine& m) {
        const auto& points = entity.points;
        if (points.size() == 1) {
            // A point: a dot as wide as a thick line.
            const auto p = m.apply(points[0][0], points[0][1]);
            cairo_new_path(cr);
            cairo_arc(cr, p[0], p[1], 0.25, 0, 2 * drawing::pi);
            cairo_fill(cr);
            return;
        }
        for (std::size_t i = 0; i < points.size(); ++i)
            moveOrLine(m, points[i][0], points[i][1], i == 0);
        if (entity.flag) cairo_close_path(cr);
        stroke(entity);
    }

    void ellipse(const vek2d::Entity& entity, const Affine& m) {
        const vek2d::Ellipse& e = d.ellipses[static_cast<std::size_t>(entity.value2)];
        const double t0 = drawing::radiansOf(e.param0);
        const double t1 = drawing::radiansOf(e.param1);
        // As many segments as keep the chord within a hundredth of a millimetre.
        const auto a0 = m.applyVector(e.axis0[0], e.axis0[1]);
        const auto a1 = m.applyVector(e.axis1[0], e.axis1[1]);
        const double radius = std::max(std::hypot(a0[0], a0[1]), std::hypot(a1[0], a1[1]));
        const double step = 2 * std::acos(std::max(0.0, 1 - 0.01 / std::max(radius, 0.01)));
        const int segments =
            static_cast<int>(std::clamp(std::ceil((t1 - t0) / std::max(step, 1e-3)), 4.0, 2048.0));
        for (int i = 0; i <= segments; ++i) {
            const double t = t0 + (t1 - t0) * i / segments;
            moveOrLine(m, e.center[0] + std::cos(t) * e.axis0[0] + std::sin(t) * e.axis1[0],
                       e.center[1] + std::cos(t) * e.axis0[1] + std::sin(t) * e.axis1[1], i == 0);
        }
        if (e.param1 - e.param0 >= drawing::turn) cairo_close_path(cr);
        stroke(entity);
    }

    void hatch(const vek2d::Entity& entity, const Affine& m) {
        const vek2d::HatchPattern& h = d.hatches[static_cast<std::size_t>(entity.value2)];
        double box[4] = {infinity, infinity, -infinity, -infinity};
        cairo_new_path(cr);
        for (const auto& loop : h.loops) {
            for (std::size_t i = 0; i < loop.size(); ++i) {
                moveOrLine(m, loop[i][0], loop[i][1], i == 0);
                const auto p = m.apply(loop[i][0], loop[i][1]);
                box[0] = std::min(box[0], p[0]);
                box[1] = std::min(box[1], p[1]);
                box[2] = std::max(box[2], p[0]);
                box[3] = std::max(box[3], p[1]);
            }
            cairo_close_path(cr);
        }
        cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
        if (entity.flag || entity.points2.empty()) {
            cairo_fill(cr);
            return;
        }
        cairo_save(cr);
        cairo_clip(cr);
        cairo_set_line_width(cr, hatchLineWidth);
        cairo_set_dash(cr, nullptr, 0, 0);
        for (const auto& family : entity.points2) {
            // The family's direction and the step from one line to the next, on the page.
            const double angle = family[0];
            const double spacing = family[1];
            const auto along = m.applyVector(std::cos(angle), std::sin(angle));
            const auto step = m.applyVector(-std::sin(angle) * spacing, std::cos(angle) * spacing);
            const double length = std::hypot(along[0], along[1]);
            if (!(length > 0)) continue;
            const double dx = along[0] / length;
            const double dy = along[1] / length;
            const double gap = std::fabs(step[0] * -dy + step[1] * dx);
            double lo = infinity;
            double hi = -infinity;
            double tlo = infinity;
            double thi = -infinity;
            for (const double x : {box[0], box[2]})
                for (const double y : {box[1], box[3]}) {
                    lo = std::min(lo, x * -dy + y * dx);
                    hi = std::max(hi, x * -dy + y * dx);
                    tlo = std::min(tlo, x * dx + y * dy);
                    thi = std::max(thi, x * dx + y * dy);
                }
            if (!(gap > 0) || (hi - lo) / gap > mostHatchLines) {
                // Lines closer than the page can tell apart: a light fill instead.
                cairo_paint_with_alpha(cr, 0.3);
                continue;
            }
            for (double o = std::ceil(lo / gap) * gap; o <= hi; o += gap) {
                cairo_move_to(cr, -dy * o + dx * tlo, dx * o + dy * tlo);
                cairo_line_to(cr, -dy * o + dx * thi, dx * o + dy * thi);
            }
            cairo_stroke(cr);
        }
        cairo_restore(cr);
    }

    void text(const vek2d::Entity& entity) {
        const veksg::Text& t = d.texts.getValue(entity.value2);
        if (t.font < 0 || t.font >= d.fonts.size()) return;
        const veksg::Font& font = d.fonts.getValue(t.font);
        const Affine frame = toPage * Affine::fromMatrix(t.matrix);
        if (!usable(frame)) return;
        std::vector<std::string> lines;
        for (std::size_t from = 0;;) {
            const std::size_t end = t.text.find(L'\n', from);
            lines.push_back(utf8(t.text.substr(from, end - from)));
            if (end == std::wstring::npos) break;
            from = end + 1;
        }
        cairo_save(cr);
        const cairo_matrix_t placed{frame.a, frame.b, frame.c, frame.d, frame.e, frame.f};
        cairo_transform(cr, &placed);
        // Text coordinates point up; glyphs are laid out downwards.
        cairo_scale(cr, 1, -1);
        cairo_set_font_face(cr, fonts.face(font));
        cairo_set_font_size(cr, 1 / fonts.capHeight(font));
        const double last = static_cast<double>(lines.size() - 1) * drawing::lineSpacing;
        double down = 0;
        switch (drawing::vAlignOf(t.attributes)) {
        case drawing::VAlign::Baseline:
            break;
        case drawing::VAlign::Bottom:
            down = -last - 0.3;
            break;
        case drawing::VAlign::Middle:
            down = (1 - last) / 2;
            break;
        case drawing::VAlign::Top:
            down = 1;
            break;
        }
        const drawing::HAlign h = drawing::hAlignOf(t.attributes);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            cairo_text_extents_t extents{};
            cairo_text_extents(cr, lines[i].c_str(), &extents);
            const double x = h == drawing::HAlign::Left     ? 0
                             : h == drawing::HAlign::Center ? -extents.x_advance / 2
                                                            : -extents.x_advance;
            cairo_move_to(cr, x, down + static_cast<double>(i) * drawing::lineSpacing);
            cairo_show_text(cr, lines[i].c_str());
        }
        cairo_restore(cr);
    }

    cairo_t* cr;
    const vek2d::SCScene2D& d;
    int sheet;
    double scale = 1;
    Affine toPage;
    std::vector<bool> hiddenEntity;
    FontFaces fonts;
    Utf8 utf8;
};

void checkSheet(const vek2d::SCScene2D& drawing, int sheet) {
    if (sheet < 0 || static_cast<std::size_t>(sheet) >= drawing.sheets.size())
        throw std::runtime_error(drawing.sheets.empty() ? std::string("the drawing has no sheet")
                                                        : "no sheet " + std::to_string(sheet));
}

void finishWith(cairo_surface_t* surface, const std::string& path) {
    cairo_surface_finish(surface);
    const cairo_status_t status = cairo_surface_status(surface);
    cairo_surface_destroy(surface);
    if (status != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error("cannot write " + path + ": " + cairo_status_to_string(status));
}

// Paints the sheet, its page scaled by `perMillimetre` and offset into a larger surface.
void paintInto(cairo_surface_t* surface, const vek2d::SCScene2D& drawing, int sheet,
               double perMillimetre, double offsetX, double offsetY) {
    cairo_t* cr = cairo_create(surface);
    cairo_translate(cr, offsetX, offsetY);
    cairo_scale(cr, perMillimetre, perMillimetre);
    {
        Painter painter(cr, drawing, sheet);
        painter.paint(pageOf(drawing, sheet));
    }
    const cairo_status_t status = cairo_status(cr);
    cairo_destroy(cr);
    if (status != CAIRO_STATUS_SUCCESS)
        throw std::runtime_error(std::string("drawing failed: ") + cairo_status_to_string(status));
}

// A raster of the given size, or of the page at the picture's resolution, with the page
// fitted and centred in it.
cairo_surface_t* rasterOf(const vek2d::SCScene2D& drawing, const SheetPicture& picture) {
    const PageSize page = pageOf(drawing, picture.sheet);
    int width = picture.width;
    int height = picture.height;
    double perMillimetre = picture.dotsPerMillimetre;
    constexpr int largest = 16384;
    if (width <= 0 || height <= 0) {
        perMillimetre = std::min({perMillimetre, largest / page.width, largest / page.height});
        width = std::max(1, static_cast<int>(std::lround(page.width * perMillimetre)));
        height = std::max(1, static_cast<int>(std::lround(page.height * perMillimetre)));
    } else {
        perMillimetre = std::min(width / page.width, height / page.height);
    }
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        cairo_surface_destroy(surface);
        throw std::runtime_error("cannot make a picture of " + std::to_string(width) + "x" +
                                 std::to_string(height) + " pixels");
    }
    try {
        paintInto(surface, drawing, picture.sheet, perMillimetre,
                  (width - page.width * perMillimetre) / 2,
                  (height - page.height * perMillimetre) / 2);
    } catch (...) {
        cairo_surface_destroy(surface);
        throw;
    }
    return surface;
}
} // namespace

PageSize pageOf(const vek2d::SCScene2D& drawing, int sheet) {
    checkSheet(drawing, sheet);
    const auto a = areaOf(drawing, sheet);
    const double width = std::max(a[2] - a[0], 1e-9);
    const double height = std::max(a[3] - a[1], 1e-9);
    if (drawing.sheets[static_cast<std::size_t>(sheet)].flag0)
        return {std::max(width, 1.0), std::max(height, 1.0)};
    // An extent has no size of its own: it is fitted into an A3 page turned its way.
    const double longSide = 420;
    const double shortSide = 297;
    const bool wide = width >= height;
    const double pageW = wide ? longSide : shortSide;
    const double pageH = wide ? shortSide : longSide;
    const double fit = std::min(pageW / width, pageH / height);
    return {std::max(width * fit, 1.0), std::max(height * fit, 1.0)};
}

bool drawsFileType(const std::string& path) {
    const std::string e = lowerExtension(path);
    return e == ".png" || e == ".svg" || e == ".pdf";
}

void drawSheet(const vek2d::SCScene2D& drawing, const std::string& path,
               const SheetPicture& picture) {
    checkSheet(drawing, picture.sheet);
    const std::string type = lowerExtension(path);
    if (type == ".png") {
        cairo_surface_t* surface = rasterOf(drawing, picture);
        const cairo_status_t status = cairo_surface_write_to_png(surface, path.c_str());
        cairo_surface_destroy(surface);
        if (status != CAIRO_STATUS_SUCCESS)
            throw std::runtime_error("cannot write " + path + ": " +
                                     cairo_status_to_string(status));
        return;
    }
    if (type != ".svg" && type != ".pdf")
        throw std::runtime_error("cannot tell the picture's format by '" + path +
                                 "': give it .png, .svg or .pdf");
    const PageSize page = pageOf(drawing, picture.sheet);
    const double w = page.width * pointsPerMillimetre;
    const double h = page.height * pointsPerMillimetre;
    cairo_surface_t* surface = type == ".svg" ? cairo_svg_surface_create(path.c_str(), w, h)
                                              : cairo_pdf_surface_create(path.c_str(), w, h);
    if (cairo_surface_status(surface) != CAIRO_STATUS_SUCCESS) {
        finishWith(surface, path);
        return;
    }
    try {
        paintInto(surface, drawing, picture.sheet, pointsPerMillimetre, 0, 0);
    } catch (...) {
        cairo_surface_destroy(surface);
        throw;
    }
    finishWith(surface, path);
}

SheetImage drawSheetImage(const vek2d::SCScene2D& drawing, const SheetPicture& picture) {
    checkSheet(drawing, picture.sheet);
    if (picture.width <= 0 || picture.height <= 0)
        throw std::runtime_error("a picture in memory needs its size");
    cairo_surface_t* surface = rasterOf(drawing, picture);
    cairo_surface_flush(surface);
    SheetImage image;
    image.width = cairo_image_surface_get_width(surface);
    image.height = cairo_image_surface_get_height(surface);
    const int stride = cairo_image_surface_get_stride(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    image.pixels.resize(static_cast<std::size_t>(image.width) *
                        static_cast<std::size_t>(image.height));
    for (int y = 0; y < image.height; ++y)
        std::copy_n(
            reinterpret_cast<const std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride),
            image.width, image.pixels.begin() + static_cast<std::ptrdiff_t>(y) * image.width);
    cairo_surface_destroy(surface);
    return image;
}

} // namespace vekhost
