#pragma once

#include <array>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "Drawing.h"

namespace vekhost {

using Point2 = std::array<double, 2>;

/// How an entity is drawn and where it belongs.
struct Pen {
    int view = 0;
    int layer = 0;
    /// A key of `colors`, from `DrawingBuilder::color`.
    int color = 0;
    drawing::Pattern pattern = drawing::Pattern::Solid;
    /// Hundredths of a millimetre on paper, 0 to 255.
    int weight = 0;
    /// Multiplies the pattern's dash lengths.
    double dashScale = 1;
    /// From the entity's own coordinates to the sheet's.
    drawing::Affine placement;
};

/// One family of parallel lines of a pattern fill.
struct HatchLines {
    double angle = 0;
    double spacing = 1;
};

/// The most a drawing may hold, so that no file makes the host run out of memory.
struct DrawingLimits {
    long long entities = 2'000'000;
    long long points = 20'000'000;
};

/// The one place where 2D data becomes records of `vek2d::SCScene2D`, following Drawing.h.
/// Refuses (LoadError) what the records cannot hold faithfully: coordinates that are not
/// finite or lie beyond `largestCoordinate`, and more than the limits allow.
class DrawingBuilder {
public:
    static constexpr double largestCoordinate = 1e12;

    /// `tolerance`: what is stored as each new sheet's `tolerance`.
    DrawingBuilder(vek2d::SCScene2D& drawing, double tolerance, DrawingLimits limits = {});

    /// A sheet; `paper` sheets have a fixed size (`setPaper`), the others grow around their
    /// entities.
    int addSheet(const std::wstring& name, bool paper, const veksg::Color4& background);
    void setPaper(int sheet, Point2 min, Point2 max);
    int addView(int sheet, const std::wstring& name, bool showsHidden);
    int addLayer(const std::wstring& name, bool hidden);
    /// The key of the colour, made on first use.
    int color(const veksg::Color4& rgba);
    /// The key of the font, made on first use.
    int font(const std::wstring& family, const std::wstring& file, int style, bool substituted);

    int addPolyline(const Pen& pen, const std::vector<Point2>& points, bool closed);
    /// center + cos(t) axis0 + sin(t) axis1, t from `start` to `end` radians.
    int addEllipse(const Pen& pen, Point2 center, Point2 axis0, Point2 axis1, double start,
                   double end);
    /// Closed loops, filled by the even-odd rule; solid without lines.
    int addHatch(const Pen& pen, const std::vector<std::vector<Point2>>& loops,
                 const std::vector<HatchLines>& lines);
    /// `frame` takes text coordinates (baseline from the origin, 1 the text height) to the
    /// entity's own; `text` may hold line breaks.
    int addText(const Pen& pen, int font, const std::wstring& text, const drawing::Affine& frame,
                drawing::HAlign h, drawing::VAlign v);

    /// Sheet and view extents, the current sheet; call once after the last entity.
    void finish();

    int entityCount() const { return static_cast<int>(scene.entities.size()); }
    const DrawingLimits& limits() const { return bounds; }

private:
    int addEntity(const Pen& pen, drawing::Kind kind, int record, std::vector<veksg::Point3> points,
                  bool flag);
    veksg::Point3 checked(Point2 p) const;
    void grow(int view, const drawing::Affine& placement, Point2 p);
    void checkPlacement(const drawing::Affine& placement) const;

    vek2d::SCScene2D& scene;
    double tolerance;
    DrawingLimits bounds;
    long long points = 0;
    std::vector<bool> paperSheets;
    // Each view's extent on its sheet, as min x, min y, max x, max y.
    std::vector<std::array<double, 4>> viewBoxes;
    std::map<std::array<float, 4>, int> colorKeys;
    std::map<std::tuple<std::wstring, std::wstring, int, bool>, int> fontKeys;
};

} // namespace vekhost
