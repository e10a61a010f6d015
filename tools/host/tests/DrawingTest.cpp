// A drawing made with the builder: its pictures, compared by where ink falls rather than by
// exact pixels, and its check, which must name each kind of damage.
#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>

#include "DrawingBuilder.h"
#include "DrawingCheck.h"
#include "DrawingRender.h"
#include "TestFiles.h"

namespace vekhost::test {
namespace {

using drawing::Affine;

// On a 100 x 50 model sheet: a solid square over (10..40, 10..40), a circle of radius 15
// around (75, 25), a dashed line along y = 5 and a text; a cross over everything on a
// hidden layer.
vek2d::SCScene2D knownDrawing() {
    vek2d::SCScene2D d;
    DrawingBuilder b(d, 1e-4);
    const int view =
        b.addView(b.addSheet(L"Model", false, veksg::Color4(1, 1, 1, 1)), L"Model", false);
    Pen pen;
    pen.view = view;
    pen.layer = b.addLayer(L"0", false);
    pen.color = b.color(veksg::Color4(0, 0, 0, 1));
    pen.weight = 50;
    b.addHatch(pen, {{{10, 10}, {40, 10}, {40, 40}, {10, 40}}}, {});
    b.addEllipse(pen, {75, 25}, {15, 0}, {0, 15}, 0, 2 * drawing::pi);
    Pen dashed = pen;
    dashed.pattern = drawing::Pattern::Dashed;
    b.addPolyline(dashed, {{0, 5}, {100, 5}}, false);
    b.addText(pen, b.font(L"sans-serif", L"", 0, false), L"HH",
              Affine::translation(50, 45) * Affine::scaling(4), drawing::HAlign::Center,
              drawing::VAlign::Middle);
    Pen hidden = pen;
    hidden.layer = b.addLayer(L"hidden", true);
    b.addPolyline(hidden, {{0, 0}, {100, 50}}, false);
    b.addPolyline(hidden, {{0, 50}, {100, 0}}, false);
    b.finish();
    return d;
}

// Ink at a point of the sheet, the picture being the sheet's extent with a margin of 3 % of
// its longer side, fitted and centred.
class Ink {
public:
    Ink(const SheetImage& picture, const vek2d::SCScene2D& d) : image(picture) {
        const auto& s = d.sheets[0];
        const double w = s.point1[0] - s.point0[0];
        const double h = s.point1[1] - s.point0[1];
        const double margin = 0.03 * std::max(w, h);
        scale = std::min(image.width / (w + 2 * margin), image.height / (h + 2 * margin));
        left = s.point0[0] - margin - (image.width / scale - w - 2 * margin) / 2;
        top = s.point1[1] + margin + (image.height / scale - h - 2 * margin) / 2;
    }
    // Lines are a pixel or two wide and smoothed: any darkened pixel next to the point.
    bool at(double x, double y) const {
        const int px = static_cast<int>((x - left) * scale);
        const int py = static_cast<int>((top - y) * scale);
        for (int dy = -1; dy <= 1; ++dy)
            for (int dx = -1; dx <= 1; ++dx) {
                const auto i =
                    static_cast<std::size_t>(py + dy) * static_cast<std::size_t>(image.width) +
                    static_cast<std::size_t>(px + dx);
                if ((image.pixels[i] & 0xFF) < 200) return true;
            }
        return false;
    }
    // The share of inked points along a segment.
    double along(double x0, double y0, double x1, double y1) const {
        int inked = 0;
        constexpr int steps = 400;
        for (int i = 0; i <= steps; ++i)
            inked += at(x0 + (x1 - x0) * i / steps, y0 + (y1 - y0) * i / steps) ? 1 : 0;
        return inked / static_cast<double>(steps + 1);
    }

private:
    const SheetImage& image;
    double left = 0;
    double top = 0;
    double scale = 1;
};

TEST(DrawingPicture, InkFallsWhereTheRecordsSay) {
    const vek2d::SCScene2D d = knownDrawing();
    SheetPicture picture;
    picture.width = 800;
    picture.height = 400;
    const SheetImage image = drawSheetImage(d, picture);
    const Ink ink(image, d);
    // The square is filled; outside it, where only the hidden cross runs, nothing is.
    EXPECT_EQ(ink.along(12, 12, 38, 38), 1.0);
    EXPECT_EQ(ink.along(45, 22.5, 55, 27.5), 0.0);
    EXPECT_EQ(ink.along(5, 45, 10, 47.5), 0.0);
    // The circle's line is there all round, its inside empty.
    for (int k = 0; k < 12; ++k) {
        const double t = k * drawing::pi / 6;
        EXPECT_TRUE(ink.at(75 + 15 * std::cos(t), 25 + 15 * std::sin(t))) << k;
        EXPECT_FALSE(ink.at(75 + 10 * std::cos(t), 25 + 10 * std::sin(t))) << k;
    }
    // A dashed line: ink for about two thirds of its length (6 on, 3 off).
    const double dashes = ink.along(1, 5, 99, 5);
    EXPECT_GT(dashes, 0.55);
    EXPECT_LT(dashes, 0.8);
    // The text's capitals, 4 high, centred on (50, 45).
    EXPECT_GT(ink.along(46, 45, 54, 45), 0.05);
    EXPECT_EQ(ink.along(46, 49, 54, 49), 0.0);

    // The PNG file holds the same picture; SVG and PDF are written from the same code.
    const std::string dir = scratchDirectory();
    drawSheet(d, dir + "/known.png", picture);
    drawSheet(d, dir + "/known.svg", picture);
    drawSheet(d, dir + "/known.pdf", picture);
    cairo_surface_t* png = cairo_image_surface_create_from_png((dir + "/known.png").c_str());
    ASSERT_EQ(cairo_surface_status(png), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(cairo_image_surface_get_width(png), 800);
    EXPECT_EQ(std::memcmp(cairo_image_surface_get_data(png), image.pixels.data(),
                          image.pixels.size() * 4),
              0);
    cairo_surface_destroy(png);
    auto head = [&](const char* name) {
        std::ifstream in(dir + name);
        return std::string(std::istreambuf_iterator<char>(in), {});
    };
    const std::string svg = head("/known.svg");
    EXPECT_NE(svg.find("<svg"), std::string::npos);
    EXPECT_NE(svg.find("stroke-dasharray"), std::string::npos);
    EXPECT_EQ(head("/known.pdf").compare(0, 5, "%PDF-"), 0);
    EXPECT_THROW(drawSheet(d, dir + "/known.gif", picture), std::runtime_error);
    EXPECT_THROW(drawSheet(d, dir + "/missing/known.png", picture), std::runtime_error);
}

struct Damage {
    const char* name;
    const char* named;
    std::function<void(vek2d::SCScene2D&)> apply;
};

const Damage damages[] = {
    {"entity_id", "entities[1] has id", [](vek2d::SCScene2D& d) { d.entities[1].id = 7; }},
    {"view", "value0 (view)", [](vek2d::SCScene2D& d) { d.entities[0].value0 = 3; }},
    {"colour", "value1 (colour)", [](vek2d::SCScene2D& d) { d.entities[2].value1 = -1; }},
    {"record", "value2 (record)", [](vek2d::SCScene2D& d) { d.entities[1].value2 = 5; }},
    {"kind", "names no kind", [](vek2d::SCScene2D& d) { d.entities[0].style |= 0xF000; }},
    {"shared_record", "drawn by 2 entities",
     [](vek2d::SCScene2D& d) { d.entities.push_back(d.entities[1]), d.entities.back().id = 6; }},
    {"font", "texts[0].font", [](vek2d::SCScene2D& d) { d.texts.begin()->font = 2; }},
    {"layer_twice", "is on 2 layers",
     [](vek2d::SCScene2D& d) { drawing::layerEntities(d).begin()[1].push_back(0); }},
    {"layer_names", "layer names", [](vek2d::SCScene2D& d) { d.values.push_back(0); }},
    {"view_sheet", "whose lists1 entry does not list it",
     [](vek2d::SCScene2D& d) {
         d.sheets.emplace_back();
         drawing::sheetViews(d).insert({});
         drawing::viewSheet(d).setValue(0, 1);
     }},
    {"sheet_views", "lists1[0]",
     [](vek2d::SCScene2D& d) { drawing::sheetViews(d).begin()[0].push_back(4); }},
    {"current", "current", [](vek2d::SCScene2D& d) { d.current = 1; }},
    {"backwards", "runs from",
     [](vek2d::SCScene2D& d) { std::swap(d.ellipses[0].param0, d.ellipses[0].param1); }},
    {"not_finite", "not finite", [](vek2d::SCScene2D& d) { d.entities[2].points[1][0] = NAN; }},
};

class DrawingDamage : public testing::TestWithParam<Damage> {};

TEST_P(DrawingDamage, IsNamedByTheCheck) {
    vek2d::SCScene2D d = knownDrawing();
    CheckResult clean;
    checkDrawing(d, clean);
    ASSERT_TRUE(clean.ok()) << clean.problems.front();
    GetParam().apply(d);
    CheckResult found;
    checkDrawing(d, found);
    ASSERT_FALSE(found.ok());
    bool named = false;
    for (const std::string& problem : found.problems)
        named = named || problem.find(GetParam().named) != std::string::npos;
    EXPECT_TRUE(named) << found.problems.front();
}

INSTANTIATE_TEST_SUITE_P(Each, DrawingDamage, testing::ValuesIn(damages),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace vekhost::test
