#include "PmiDraw.h"

#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <sstream>
#include <stdexcept>

#include "PmiReader.h"
#include "Text.h"

namespace vekload {

namespace {
using Point = std::array<double, 3>;
using Project = std::function<Point(const Point&)>;

constexpr std::array<std::uint8_t, 3> ink{20, 50, 150};

Point toPoint(const veksg::Point3& p) {
    return {p[0], p[1], p[2]};
}

// The picture, painted over without depth: annotations stay readable in front of the part.
class Pen {
public:
    explicit Pen(Image& image) : image(image) {}

    // Mixes `colour` into the pixel by `coverage`, 0 to 1.
    void blend(int x, int y, const std::array<std::uint8_t, 3>& colour, double coverage) {
        if (x < 0 || y < 0 || x >= image.width || y >= image.height || coverage <= 0) return;
        std::uint8_t* pixel =
            &image.rgba[(static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
                         static_cast<std::size_t>(x)) *
                        4];
        const double c = std::min(coverage, 1.0);
        for (std::size_t i = 0; i < 3; ++i)
            pixel[i] = static_cast<std::uint8_t>(std::lround(pixel[i] * (1 - c) + colour[i] * c));
        pixel[3] = std::max(pixel[3], static_cast<std::uint8_t>(std::lround(255 * c)));
    }

    void line(const Point& a, const Point& b) {
        if (!std::isfinite(a[0] + a[1] + b[0] + b[1])) return;
        const double dx = b[0] - a[0];
        const double dy = b[1] - a[1];
        const int steps =
            static_cast<int>(std::ceil(std::min(std::max(std::fabs(dx), std::fabs(dy)), 65536.0)));
        for (int i = 0; i <= steps; ++i) {
            const double t = steps > 0 ? static_cast<double>(i) / steps : 0.0;
            blend(static_cast<int>(std::floor(a[0] + t * dx)),
                  static_cast<int>(std::floor(a[1] + t * dy)), ink, 1);
        }
    }

    void fill(double x0, double y0, double x1, double y1, const std::array<std::uint8_t, 3>& c) {
        for (int y = static_cast<int>(std::floor(y0)); y < static_cast<int>(std::ceil(y1)); ++y)
            for (int x = static_cast<int>(std::floor(x0)); x < static_cast<int>(std::ceil(x1)); ++x)
                blend(x, y, c, 1);
    }

    void frame(double x0, double y0, double x1, double y1) {
        line({x0, y0, 0}, {x1, y0, 0});
        line({x1, y0, 0}, {x1, y1, 0});
        line({x1, y1, 0}, {x0, y1, 0});
        line({x0, y1, 0}, {x0, y0, 0});
    }

    // A filled triangle with its tip at `tip`, pointing away from `from`.
    void arrow(const Point& tip, const Point& from, double size) {
        const double dx = tip[0] - from[0];
        const double dy = tip[1] - from[1];
        const double length = std::hypot(dx, dy);
        if (!(length > 1e-9)) return;
        const double ux = dx / length;
        const double uy = dy / length;
        for (double back = 0; back <= size; back += 0.5) {
            const double half = back * 0.35;
            const Point centre{tip[0] - ux * back, tip[1] - uy * back, 0};
            line({centre[0] - uy * half, centre[1] + ux * half, 0},
                 {centre[0] + uy * half, centre[1] - ux * half, 0});
        }
    }

    Image& image;
};

// DejaVu Sans through FreeType, at one pixel size.
class Font {
public:
    explicit Font(int pixels) {
        if (FT_Init_FreeType(&library) != 0) throw std::runtime_error("FreeType did not start");
        if (FT_New_Face(library, VEKLOAD_FONT, 0, &face) != 0) {
            FT_Done_FreeType(library);
            throw std::runtime_error(std::string("cannot read the font ") + VEKLOAD_FONT +
                                     " (fonts-dejavu-core)");
        }
        FT_Set_Pixel_Sizes(face, 0, static_cast<FT_UInt>(pixels));
    }
    ~Font() {
        FT_Done_Face(face);
        FT_Done_FreeType(library);
    }
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;

    double ascent() const { return static_cast<double>(face->size->metrics.ascender) / 64; }
    double height() const {
        return static_cast<double>(face->size->metrics.ascender - face->size->metrics.descender) /
               64;
    }

    double width(const std::wstring& text) {
        double advance = 0;
        for (const wchar_t c : text)
            if (FT_Load_Char(face, static_cast<FT_ULong>(c), FT_LOAD_DEFAULT) == 0)
                advance += static_cast<double>(face->glyph->advance.x) / 64;
        return advance;
    }

    // Sets `text` with its top left corner at (x, y).
    void draw(Pen& pen, double x, double y, const std::wstring& text) {
        double penX = x;
        const int baseline = static_cast<int>(std::lround(y + ascent()));
        for (const wchar_t c : text) {
            if (FT_Load_Char(face, static_cast<FT_ULong>(c), FT_LOAD_RENDER) != 0) continue;
            const FT_GlyphSlot glyph = face->glyph;
            const FT_Bitmap& bitmap = glyph->bitmap;
            const int left = static_cast<int>(std::lround(penX)) + glyph->bitmap_left;
            const int top = baseline - glyph->bitmap_top;
            for (unsigned row = 0; row < bitmap.rows; ++row)
                for (unsigned column = 0; column < bitmap.width; ++column) {
                    const std::uint8_t value =
                        bitmap.buffer[static_cast<long>(row) * bitmap.pitch + column];
                    pen.blend(left + static_cast<int>(column), top + static_cast<int>(row), ink,
                              value / 255.0);
                }
            penX += static_cast<double>(glyph->advance.x) / 64;
        }
    }

private:
    FT_Library library = nullptr;
    FT_Face face = nullptr;
};

std::wstring kindOf(const veksg::SCPmi& pmi, int key) {
    if (key >= pmi.relation5.size()) return L"";
    for (const int attribute : pmi.relation5.getValue(key)) {
        if (attribute < 0 || attribute >= pmi.pmiAttributes.size()) continue;
        const auto& value = pmi.pmiAttributes.getValue(attribute);
        if (value && value->get() && std::wstring(value->key()) == vekhost::pmiattr::type)
            return value->get().get();
    }
    return L"";
}

class Annotator {
public:
    Annotator(const veksg::SCPmi& pmi, Image& image, const Project& project)
        : pmi(pmi), pen(image), font(std::clamp(std::min(image.width, image.height) / 40, 9, 48)),
          project(project), padding(std::max(2.0, font.height() / 5)) {}

    void draw(int key) {
        auto& annotation = *pmi.pmis.getValue(key);
        if (auto* measure = dynamic_cast<veksg::Measure*>(&annotation)) {
            dimension(*measure);
        } else if (auto* leader = dynamic_cast<veksg::Text3DLeader*>(&annotation)) {
            if (!leader->text3d) return;
            const Point at = project(toPoint(leader->text3d->position));
            if (leader->leader && !leader->leader->points.empty()) {
                const Point anchor = project(toPoint(leader->leader->points.front()));
                pen.line(anchor, at);
                if (kindOf(pmi, key) == L"datum")
                    pen.arrow(anchor, at, font.height() * 0.7);
                else
                    pen.arrow(anchor, at, font.height() * 0.5);
            }
            frame(at, leader->text3d->text);
        }
    }

private:
    void dimension(const veksg::Measure& measure) {
        if (measure.leader && measure.leader->points.size() == 4) {
            std::array<Point, 4> p{};
            for (std::size_t i = 0; i < 4; ++i)
                p[i] = project(toPoint(measure.leader->points[i]));
            pen.line(p[0], p[1]);
            pen.line(p[1], p[2]);
            pen.line(p[2], p[3]);
            pen.arrow(p[1], p[2], font.height() * 0.5);
            pen.arrow(p[2], p[1], font.height() * 0.5);
        }
        label(project(toPoint(measure.point3)), measure.measureText, false);
    }

    // A feature control frame: one cell per word of the text.
    void frame(const Point& at, const std::wstring& text) { label(at, text, true); }

    void label(const Point& at, const std::wstring& text, bool cells) {
        std::vector<std::wstring> words;
        if (cells) {
            std::wstringstream split(text);
            std::wstring word;
            while (split >> word)
                words.push_back(word);
        } else {
            words.push_back(text);
        }
        double total = 0;
        std::vector<double> widths;
        for (const std::wstring& word : words) {
            widths.push_back(font.width(word) + 2 * padding);
            total += widths.back();
        }
        const double x0 = at[0] - total / 2;
        const double y0 = at[1] - font.height() / 2 - padding;
        const double y1 = at[1] + font.height() / 2 + padding;
        pen.fill(x0, y0, x0 + total, y1, {255, 255, 255});
        double x = x0;
        for (std::size_t i = 0; i < words.size(); ++i) {
            font.draw(pen, x + padding, y0 + padding, words[i]);
            if (cells && i > 0) pen.line({x, y0, 0}, {x, y1, 0});
            x += widths[i];
        }
        if (cells) pen.frame(x0, y0, x0 + total, y1);
    }

    const veksg::SCPmi& pmi;
    Pen pen;
    Font font;
    const Project& project;
    double padding;
};

Point normalized(const Point& v) {
    const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    if (!(length > 1e-12)) return {0, 0, 0};
    return {v[0] / length, v[1] / length, v[2] / length};
}

Point cross(const Point& a, const Point& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
} // namespace

std::vector<float> viewOrientation(const veksg::View& view) {
    Point towards =
        normalized({view.position[0] - view.target[0], view.position[1] - view.target[1],
                    view.position[2] - view.target[2]});
    if (towards == Point{0, 0, 0}) towards = {0, 0, 1};
    Point right = normalized(cross(toPoint(view.up), towards));
    // An up along the line of sight says nothing: any right will do.
    if (right == Point{0, 0, 0}) right = normalized(cross({0, 1, 0}, towards));
    if (right == Point{0, 0, 0}) right = normalized(cross({1, 0, 0}, towards));
    const Point up = cross(towards, right);
    std::vector<float> elements(16, 0.0f);
    // Rows: the world directions of the picture's right, up and towards the viewer.
    for (std::size_t column = 0; column < 3; ++column) {
        elements[column * 4 + 0] = static_cast<float>(right[column]);
        elements[column * 4 + 1] = static_cast<float>(up[column]);
        elements[column * 4 + 2] = static_cast<float>(towards[column]);
    }
    elements[15] = 1.0f;
    return elements;
}

void addPmi(RenderOptions& options, const vekhost::Document& document,
            const std::string& viewName) {
    const veksg::SCPmi& pmi = *document.pmi;
    std::vector<int> shown;
    if (viewName.empty()) {
        for (int key = 0; key < pmi.pmis.size(); ++key)
            shown.push_back(key);
    } else {
        int found = -1;
        for (int key = 0; key < pmi.views.size() && found < 0; ++key)
            if (pmi.views.getValue(key) &&
                vekhost::utf8FromWide(pmi.views.getValue(key)->name()) == viewName)
                found = key;
        if (found < 0) throw std::invalid_argument("no saved view is named \"" + viewName + "\"");
        options.orientation = viewOrientation(*pmi.views.getValue(found));
        if (found < pmi.relation9.size()) shown = pmi.relation9.getValue(found);
        if (found < pmi.relation10.size())
            for (const int section : pmi.relation10.getValue(found)) {
                if (section < 0 || section >= pmi.sections.size() ||
                    !pmi.sections.getValue(section))
                    continue;
                const veksg::Section& cut = *pmi.sections.getValue(section);
                options.cuts.push_back({cut.origin[0], cut.origin[1], cut.origin[2], cut.normal[0],
                                        cut.normal[1], cut.normal[2]});
            }
    }
    shown.erase(std::remove_if(shown.begin(), shown.end(),
                               [&](int key) {
                                   return key < 0 || key >= pmi.pmis.size() ||
                                          !pmi.pmis.getValue(key);
                               }),
                shown.end());
    if (shown.empty()) return;
    for (const int key : shown)
        if (key < pmi.pmiBoxes.size() && pmi.pmiBoxes.getValue(key).valid) {
            const veksg::BBox& box = pmi.pmiBoxes.getValue(key);
            options.alsoFit.push_back(
                {box.min[0], box.min[1], box.min[2], box.max[0], box.max[1], box.max[2]});
        }
    const veksg::SCPmi* source = &pmi;
    options.overlay = [source, shown](Image& image, const Project& project) {
        Annotator annotator(*source, image, project);
        for (const int key : shown)
            annotator.draw(key);
    };
}

} // namespace vekload
