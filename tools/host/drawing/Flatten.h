#pragma once

#include <vector>

#include "DrawingBuilder.h"

// Curves as points, where the records hold points: polyline bulges, hatch boundaries,
// splines. Each deviates from its curve by at most `relativeTolerance` of the curve's size.
namespace vekhost::flatten {

constexpr double relativeTolerance = 2e-4;

/// Appends the arc center + cos(t) axis0 + sin(t) axis1 for t from `start` to `end`
/// (radians, either direction); the start point only with `withStart`.
void appendArc(std::vector<Point2>& out, Point2 center, Point2 axis0, Point2 axis1, double start,
               double end, bool withStart);
/// Appends the segment from `from` to `to` bulging by `bulge` (the tangent of a quarter of
/// the included angle, positive counter-clockwise), without its start point.
void appendBulge(std::vector<Point2>& out, Point2 from, Point2 to, double bulge);
/// A B-spline of `degree` over `knots`, rational when `weights` has one per control point.
/// Returns the control polygon when the knots do not fit the control points.
std::vector<Point2> spline(int degree, const std::vector<double>& knots,
                           const std::vector<Point2>& control, const std::vector<double>& weights);

} // namespace vekhost::flatten
