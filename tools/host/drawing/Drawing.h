#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "vek2d/SCScene2D.h"

// How the host fills the fields of the 2D records that the data model leaves open. Everything
// that writes, draws or checks a drawing reads the conventions from here; the tools' README
// gives the same as a table.
namespace vekhost::drawing {

/// What an entity draws; its record other than the entity itself is in the table named.
enum class Kind : std::uint16_t {
    Polyline = 0, ///< `points` (one point: a dot)
    Ellipse = 1,  ///< `ellipses[value2]`
    Hatch = 2,    ///< `hatches[value2]`
    Text = 3,     ///< `texts[value2]`
};
constexpr int kindCount = 4;

/// Dash patterns of `Entity::style`, lengths in `dashLengths`.
enum class Pattern : std::uint16_t {
    Solid = 0,
    Dashed = 1,
    Hidden = 2,
    Center = 3,
    Phantom = 4,
    Dotted = 5,
    DashDot = 6,
};
constexpr int patternCount = 7;

/// On and off lengths of each pattern (a zero is a dot), in drawing units before the
/// entity's `scale`; a solid line has none.
struct Dashes {
    std::array<double, 6> lengths{};
    int count = 0;
};
Dashes dashLengths(Pattern pattern);

/// `Entity::style`: bits 0-3 the pattern, bits 4-11 the line weight in hundredths of a
/// millimetre on paper (0: the default, 0.25 mm), bits 12-15 the kind.
constexpr std::uint16_t packStyle(Kind kind, Pattern pattern, int weight) {
    return static_cast<std::uint16_t>(static_cast<unsigned>(pattern) |
                                      (static_cast<unsigned>(weight & 0xFF) << 4) |
                                      (static_cast<unsigned>(kind) << 12));
}
constexpr Kind kindOf(std::uint16_t style) {
    return static_cast<Kind>(style >> 12);
}
constexpr Pattern patternOf(std::uint16_t style) {
    return static_cast<Pattern>(style & 0xF);
}
constexpr int weightOf(std::uint16_t style) {
    return (style >> 4) & 0xFF;
}

/// `Ellipse::param0` and `param1` are angles in 2^-30 turns: a full turn is `turn`.
constexpr int turn = 1 << 30;
constexpr double pi = 3.14159265358979323846;
inline double radiansOf(int param) {
    return param * (2 * pi / turn);
}
/// Radians to the parameter unit, rounded.
inline int paramOf(double radians) {
    return static_cast<int>(std::lround(radians * (turn / (2 * pi))));
}

/// `Text::attributes`: bits 0-1 the horizontal alignment, bits 2-3 the vertical one.
enum class HAlign { Left = 0, Center = 1, Right = 2 };
enum class VAlign { Baseline = 0, Bottom = 1, Middle = 2, Top = 3 };
constexpr std::uint16_t packAlignment(HAlign h, VAlign v) {
    return static_cast<std::uint16_t>(static_cast<unsigned>(h) | (static_cast<unsigned>(v) << 2));
}
constexpr HAlign hAlignOf(std::uint16_t attributes) {
    return static_cast<HAlign>(attributes & 3);
}
constexpr VAlign vAlignOf(std::uint16_t attributes) {
    return static_cast<VAlign>((attributes >> 2) & 3);
}
/// Lines of a multi-line text follow one another this many text heights apart.
constexpr double lineSpacing = 5.0 / 3.0;

/// `Font::style`.
constexpr int boldFont = 1;
constexpr int italicFont = 2;
/// `Font::attributes`: the drawing named a font that is not an outline font (a shape font);
/// the name is the family drawn in its place.
constexpr std::uint16_t substitutedFont = 1;

/// `SCScene2D::values` (one per layer, beside its name in `names`).
constexpr int hiddenLayer = 1;

/// The index tables in use.
/// `lists0[layer]`: the entities on the layer, ascending.
/// `lists1[sheet]`: the views on the sheet, ascending.
/// `map0[view]`: the sheet of the view.
inline veksg::Container<int, std::vector<int>>& layerEntities(vek2d::SCScene2D& d) {
    return d.lists0;
}
inline const veksg::Container<int, std::vector<int>>& layerEntities(const vek2d::SCScene2D& d) {
    return d.lists0;
}
inline veksg::Container<int, std::vector<int>>& sheetViews(vek2d::SCScene2D& d) {
    return d.lists1;
}
inline const veksg::Container<int, std::vector<int>>& sheetViews(const vek2d::SCScene2D& d) {
    return d.lists1;
}
inline veksg::Container<int, int>& viewSheet(vek2d::SCScene2D& d) {
    return d.map0;
}
inline const veksg::Container<int, int>& viewSheet(const vek2d::SCScene2D& d) {
    return d.map0;
}

/// A 2D affine placement, x' = a x + c y + e, y' = b x + d y + f; stored in
/// `Entity::matrix` and `Text::matrix` as the data model's 4x4, column after column.
struct Affine {
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;

    /// This after `inner`: the point goes through `inner` first.
    Affine operator*(const Affine& inner) const {
        return {a * inner.a + c * inner.b,     b * inner.a + d * inner.b,
                a * inner.c + c * inner.d,     b * inner.c + d * inner.d,
                a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
    }
    std::array<double, 2> apply(double x, double y) const {
        return {a * x + c * y + e, b * x + d * y + f};
    }
    std::array<double, 2> applyVector(double x, double y) const {
        return {a * x + c * y, b * x + d * y};
    }
    vekmath::Tuple<float, 16> toMatrix() const;
    static Affine fromMatrix(const vekmath::Tuple<float, 16>& m);
    static Affine translation(double x, double y) { return {1, 0, 0, 1, x, y}; }
    static Affine scaling(double s) { return {s, 0, 0, s, 0, 0}; }
    static Affine rotation(double radians) {
        const double cs = std::cos(radians);
        const double sn = std::sin(radians);
        return {cs, sn, -sn, cs, 0, 0};
    }
};

} // namespace vekhost::drawing
