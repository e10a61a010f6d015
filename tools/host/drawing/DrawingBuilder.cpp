#include "DrawingBuilder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <stdexcept>
#include <string>

#include "LoadError.h"

namespace vekhost {

using drawing::Affine;
using drawing::Kind;

namespace {
std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

bool inRange(double value) {
    return std::isfinite(value) && std::fabs(value) <= DrawingBuilder::largestCoordinate;
}

constexpr double infinity = std::numeric_limits<double>::infinity();
} // namespace

namespace drawing {
vekmath::Tuple<float, 16> Affine::toMatrix() const {
    vekmath::Tuple<float, 16> m = vekmath::MatrixUtils::createIdentity();
    m[0] = static_cast<float>(a);
    m[1] = static_cast<float>(b);
    m[4] = static_cast<float>(c);
    m[5] = static_cast<float>(d);
    m[12] = static_cast<float>(e);
    m[13] = static_cast<float>(f);
    return m;
}

Affine Affine::fromMatrix(const vekmath::Tuple<float, 16>& m) {
    return {m[0], m[1], m[4], m[5], m[12], m[13]};
}

Dashes dashLengths(Pattern pattern) {
    switch (pattern) {
    case Pattern::Dashed:
        return {{6, 3}, 2};
    case Pattern::Hidden:
        return {{3, 1.5}, 2};
    case Pattern::Center:
        return {{12, 3, 3, 3}, 4};
    case Pattern::Phantom:
        return {{12, 3, 3, 3, 3, 3}, 6};
    case Pattern::Dotted:
        return {{0, 2}, 2};
    case Pattern::DashDot:
        return {{6, 2, 0, 2}, 4};
    case Pattern::Solid:
        break;
    }
    return {};
}
} // namespace drawing

DrawingBuilder::DrawingBuilder(vek2d::SCScene2D& drawing, double chordTolerance,
                               DrawingLimits limits)
    : scene(drawing), tolerance(chordTolerance), bounds(limits) {
}

int DrawingBuilder::addSheet(const std::wstring& name, bool paper,
                             const veksg::Color4& background) {
    vek2d::Sheet sheet;
    sheet.name = name;
    sheet.flag0 = paper;
    sheet.tolerance = tolerance;
    sheet.color = background;
    scene.sheets.push_back(sheet);
    paperSheets.push_back(paper);
    const int key = static_cast<int>(scene.sheets.size()) - 1;
    drawing::sheetViews(scene).insert(key, {}, {});
    return key;
}

void DrawingBuilder::setPaper(int sheet, Point2 min, Point2 max) {
    auto& s = scene.sheets[static_cast<std::size_t>(sheet)];
    s.point0 = checked(min);
    s.point1 = checked(max);
}

int DrawingBuilder::addView(int sheet, const std::wstring& name, bool showsHidden) {
    vek2d::View view;
    view.name = name;
    view.flag = showsHidden;
    scene.views.push_back(view);
    const int key = static_cast<int>(scene.views.size()) - 1;
    drawing::viewSheet(scene).insert(key, sheet, -1);
    auto& views = drawing::sheetViews(scene);
    views.resizeToFitKey(sheet, {});
    views.begin()[sheet].push_back(key);
    viewBoxes.push_back({infinity, infinity, -infinity, -infinity});
    return key;
}

int DrawingBuilder::addLayer(const std::wstring& name, bool hidden) {
    scene.names.push_back(name);
    scene.values.push_back(hidden ? drawing::hiddenLayer : 0);
    const int key = static_cast<int>(scene.names.size()) - 1;
    drawing::layerEntities(scene).insert(key, {}, {});
    return key;
}

int DrawingBuilder::color(const veksg::Color4& rgba) {
    const std::array<float, 4> key{rgba[0], rgba[1], rgba[2], rgba[3]};
    const auto found = colorKeys.find(key);
    if (found != colorKeys.end()) return found->second;
    vek2d::EntityColor entry;
    entry.color = rgba;
    scene.colors.push_back(entry);
    const int made = static_cast<int>(scene.colors.size()) - 1;
    colorKeys.emplace(key, made);
    return made;
}

int DrawingBuilder::font(const std::wstring& family, const std::wstring& file, int style,
                         bool substituted) {
    const auto key = std::make_tuple(family, file, style, substituted);
    const auto found = fontKeys.find(key);
    if (found != fontKeys.end()) return found->second;
    veksg::Font font;
    font.setName(family.c_str());
    font.setPath(file.c_str());
    font.style = style;
    font.attributes = substituted ? drawing::substitutedFont : 0;
    const int made = scene.fonts.insert(font);
    fontKeys.emplace(key, made);
    return made;
}

veksg::Point3 DrawingBuilder::checked(Point2 p) const {
    for (const double value : p)
        if (!inRange(value)) throw LoadError("coordinate " + number(value) + " is out of range");
    return veksg::Point3(static_cast<float>(p[0]), static_cast<float>(p[1]), 0.0f);
}

void DrawingBuilder::checkPlacement(const Affine& placement) const {
    for (const double value :
         {placement.a, placement.b, placement.c, placement.d, placement.e, placement.f})
        if (!inRange(value))
            throw LoadError("placement value " + number(value) + " is out of range");
}

void DrawingBuilder::grow(int view, const Affine& placement, Point2 p) {
    const auto [x, y] = placement.apply(p[0], p[1]);
    if (!inRange(x) || !inRange(y))
        throw LoadError("placed coordinate " + number(std::isfinite(x) ? y : x) +
                        " is out of range");
    auto& box = viewBoxes[static_cast<std::size_t>(view)];
    box[0] = std::min(box[0], x);
    box[1] = std::min(box[1], y);
    box[2] = std::max(box[2], x);
    box[3] = std::max(box[3], y);
}

int DrawingBuilder::addEntity(const Pen& pen, Kind kind, int record,
                              std::vector<veksg::Point3> entityPoints, bool flag) {
    if (pen.view < 0 || pen.view >= static_cast<int>(scene.views.size()) || pen.layer < 0 ||
        pen.layer >= drawing::layerEntities(scene).size())
        throw std::logic_error("an entity for a view or layer that does not exist");
    if (static_cast<long long>(scene.entities.size()) >= bounds.entities)
        throw LoadError("the drawing has more than " + std::to_string(bounds.entities) +
                        " entities");
    points += static_cast<long long>(entityPoints.size());
    if (points > bounds.points)
        throw LoadError("the drawing has more than " + std::to_string(bounds.points) + " points");
    vek2d::Entity entity;
    entity.points = std::move(entityPoints);
    entity.id = static_cast<int>(scene.entities.size());
    entity.scale = pen.dashScale;
    entity.value0 = pen.view;
    entity.value1 = pen.color;
    entity.flag = flag;
    entity.value2 = record;
    entity.style = drawing::packStyle(kind, pen.pattern, std::clamp(pen.weight, 0, 255));
    entity.matrix = pen.placement.toMatrix();
    const int key = entity.id;
    scene.entities.push_back(std::move(entity));
    // Appended in place: a copy per entity would cost the square of a layer's size.
    drawing::layerEntities(scene).begin()[pen.layer].push_back(key);
    return key;
}

int DrawingBuilder::addPolyline(const Pen& pen, const std::vector<Point2>& line, bool closed) {
    checkPlacement(pen.placement);
    std::vector<veksg::Point3> stored;
    stored.reserve(line.size());
    for (const Point2& p : line) {
        stored.push_back(checked(p));
        grow(pen.view, pen.placement, p);
    }
    return addEntity(pen, Kind::Polyline, -1, std::move(stored), closed);
}

int DrawingBuilder::addEllipse(const Pen& pen, Point2 center, Point2 axis0, Point2 axis1,
                               double start, double end) {
    checkPlacement(pen.placement);
    vek2d::Ellipse ellipse;
    ellipse.center = checked(center);
    ellipse.axis0 = checked(axis0);
    ellipse.axis1 = checked(axis1);
    if (!std::isfinite(start) || !std::isfinite(end))
        throw LoadError("arc angle " + number(std::isfinite(start) ? end : start) +
                        " is not a number");
    // One turn at most, counter-clockwise, starting within the first; equal ends and a
    // turn or more are a whole ellipse.
    const double full = 2 * drawing::pi;
    double sweep = end - start;
    if (sweep <= 0) sweep = std::fmod(sweep, full) + full;
    if (sweep >= full * (1 - 1e-12)) sweep = full;
    start = std::fmod(start, full);
    if (start < 0) start += full;
    ellipse.param0 = drawing::paramOf(start);
    ellipse.param1 = ellipse.param0 + std::max(1, drawing::paramOf(sweep));
    // The extent: points along the arc, tight enough for fitting a picture.
    constexpr int samples = 32;
    for (int i = 0; i <= samples; ++i) {
        const double t = start + sweep * i / samples;
        grow(pen.view, pen.placement,
             {center[0] + std::cos(t) * axis0[0] + std::sin(t) * axis1[0],
              center[1] + std::cos(t) * axis0[1] + std::sin(t) * axis1[1]});
    }
    scene.ellipses.push_back(ellipse);
    return addEntity(pen, Kind::Ellipse, static_cast<int>(scene.ellipses.size()) - 1, {}, false);
}

int DrawingBuilder::addHatch(const Pen& pen, const std::vector<std::vector<Point2>>& loops,
                             const std::vector<HatchLines>& lines) {
    checkPlacement(pen.placement);
    vek2d::HatchPattern hatch;
    long long count = 0;
    for (const auto& loop : loops) {
        std::vector<veksg::Point3> stored;
        stored.reserve(loop.size());
        for (const Point2& p : loop) {
            stored.push_back(checked(p));
            grow(pen.view, pen.placement, p);
        }
        count += static_cast<long long>(stored.size());
        hatch.loops.push_back(std::move(stored));
    }
    std::vector<veksg::Point3> families;
    for (const HatchLines& family : lines) {
        if (!(family.spacing > 0) || !inRange(family.spacing) || !std::isfinite(family.angle))
            throw LoadError("hatch line spacing " + number(family.spacing) + " is out of range");
        families.push_back(checked({family.angle, family.spacing}));
    }
    points += count;
    scene.hatches.push_back(std::move(hatch));
    const int key =
        addEntity(pen, Kind::Hatch, static_cast<int>(scene.hatches.size()) - 1, {}, lines.empty());
    scene.entities.back().points2 = std::move(families);
    return key;
}

int DrawingBuilder::addText(const Pen& pen, int font, const std::wstring& text, const Affine& frame,
                            drawing::HAlign h, drawing::VAlign v) {
    checkPlacement(pen.placement);
    checkPlacement(frame);
    const Affine placed = pen.placement * frame;
    checkPlacement(placed);
    veksg::Text record;
    record.text = text;
    record.font = font;
    record.color = pen.color;
    record.attributes = drawing::packAlignment(h, v);
    record.matrix = placed.toMatrix();
    record.position = veksg::Point3(static_cast<float>(placed.e), static_cast<float>(placed.f), 0);
    // The extent: a box of average glyph width around the lines, as aligned.
    std::size_t longest = 0;
    int lines = 1;
    std::size_t length = 0;
    for (const wchar_t c : text) {
        if (c == L'\n') {
            ++lines;
            length = 0;
        } else {
            longest = std::max(longest, ++length);
        }
    }
    const double width = 0.6 * static_cast<double>(longest);
    const double height = 1 + (lines - 1) * drawing::lineSpacing;
    const double left = h == drawing::HAlign::Left     ? 0
                        : h == drawing::HAlign::Center ? -width / 2
                                                       : -width;
    const double top = v == drawing::VAlign::Top      ? 0
                       : v == drawing::VAlign::Middle ? height / 2
                                                      : height;
    for (const Point2 corner : {Point2{left, top}, Point2{left + width, top},
                                Point2{left, top - height}, Point2{left + width, top - height}})
        grow(pen.view, placed, corner);
    const int key = scene.texts.insert(record);
    return addEntity(pen, Kind::Text, key, {}, false);
}

void DrawingBuilder::finish() {
    const auto sheetCount = scene.sheets.size();
    std::vector<std::array<double, 4>> sheetBoxes(sheetCount,
                                                  {infinity, infinity, -infinity, -infinity});
    for (std::size_t v = 0; v < scene.views.size(); ++v) {
        auto& box = viewBoxes[v];
        if (box[0] > box[2]) box = {0, 0, 0, 0};
        scene.views[v].point0 =
            veksg::Point3(static_cast<float>(box[0]), static_cast<float>(box[1]), 0.0f);
        scene.views[v].point1 =
            veksg::Point3(static_cast<float>(box[2]), static_cast<float>(box[3]), 0.0f);
        auto& sheetBox = sheetBoxes[static_cast<std::size_t>(
            drawing::viewSheet(scene).getValue(static_cast<int>(v)))];
        sheetBox = {std::min(sheetBox[0], box[0]), std::min(sheetBox[1], box[1]),
                    std::max(sheetBox[2], box[2]), std::max(sheetBox[3], box[3])};
    }
    for (std::size_t s = 0; s < sheetCount; ++s) {
        if (paperSheets[s]) continue;
        auto box = sheetBoxes[s];
        if (box[0] > box[2]) box = {0, 0, 0, 0};
        scene.sheets[s].point0 =
            veksg::Point3(static_cast<float>(box[0]), static_cast<float>(box[1]), 0.0f);
        scene.sheets[s].point1 =
            veksg::Point3(static_cast<float>(box[2]), static_cast<float>(box[3]), 0.0f);
    }
    scene.current = 0;
}

} // namespace vekhost
