#include "Flatten.h"

#include <algorithm>
#include <cmath>

namespace vekhost::flatten {

namespace {
constexpr int mostSegments = 1024;
// Per knot span of a spline; its control polygon bounds how far it can bend within one.
constexpr int samplesPerSpan = 16;
constexpr int largestDegree = 25;

int segmentsFor(double sweep) {
    static const double step = 2 * std::acos(1 - relativeTolerance);
    const double count = std::ceil(std::fabs(sweep) / step);
    return static_cast<int>(std::clamp(count, 1.0, static_cast<double>(mostSegments)));
}
} // namespace

void appendArc(std::vector<Point2>& out, Point2 center, Point2 axis0, Point2 axis1, double start,
               double end, bool withStart) {
    if (!std::isfinite(start) || !std::isfinite(end)) return;
    const int segments = segmentsFor(end - start);
    for (int i = withStart ? 0 : 1; i <= segments; ++i) {
        const double t = start + (end - start) * i / segments;
        out.push_back({center[0] + std::cos(t) * axis0[0] + std::sin(t) * axis1[0],
                       center[1] + std::cos(t) * axis0[1] + std::sin(t) * axis1[1]});
    }
}

void appendBulge(std::vector<Point2>& out, Point2 from, Point2 to, double bulge) {
    const double dx = to[0] - from[0];
    const double dy = to[1] - from[1];
    const double chord = std::hypot(dx, dy);
    if (!(std::fabs(bulge) > 1e-9) || !(chord > 0) || !std::isfinite(bulge)) {
        out.push_back(to);
        return;
    }
    const double angle = 4 * std::atan(bulge);
    const double radius = chord / (2 * std::sin(angle / 2));
    // The centre lies off the chord's middle, to the left for a counter-clockwise arc.
    const double offset = radius * std::cos(angle / 2);
    const Point2 center{from[0] + dx / 2 - dy / chord * offset,
                        from[1] + dy / 2 + dx / chord * offset};
    const double r = std::fabs(radius);
    const double start = std::atan2(from[1] - center[1], from[0] - center[0]);
    appendArc(out, center, {r, 0}, {0, r}, start, start + angle, false);
    out.back() = to;
}

std::vector<Point2> spline(int degree, const std::vector<double>& knots,
                           const std::vector<Point2>& control, const std::vector<double>& weights) {
    const auto n = control.size();
    const bool fits =
        degree >= 1 && degree <= largestDegree && n >= static_cast<std::size_t>(degree) + 1 &&
        knots.size() == n + static_cast<std::size_t>(degree) + 1 &&
        std::is_sorted(knots.begin(), knots.end()) &&
        std::all_of(knots.begin(), knots.end(), [](double k) { return std::isfinite(k); });
    if (!fits) return control;
    const bool rational =
        weights.size() == n && std::all_of(weights.begin(), weights.end(),
                                           [](double w) { return std::isfinite(w) && w > 0; });
    const auto p = static_cast<std::size_t>(degree);
    std::vector<std::array<double, 3>> work(p + 1);
    // de Boor's algorithm in homogeneous coordinates, in span `k` at `u`.
    auto at = [&](std::size_t k, double u) {
        for (std::size_t j = 0; j <= p; ++j) {
            const std::size_t i = k - p + j;
            const double w = rational ? weights[i] : 1.0;
            work[j] = {control[i][0] * w, control[i][1] * w, w};
        }
        for (std::size_t r = 1; r <= p; ++r)
            for (std::size_t j = p; j >= r; --j) {
                const std::size_t i = k - p + j;
                const double span = knots[i + p + 1 - r] - knots[i];
                const double a = span > 0 ? (u - knots[i]) / span : 0;
                for (int c = 0; c < 3; ++c)
                    work[j][static_cast<std::size_t>(c)] =
                        (1 - a) * work[j - 1][static_cast<std::size_t>(c)] +
                        a * work[j][static_cast<std::size_t>(c)];
            }
        return Point2{work[p][0] / work[p][2], work[p][1] / work[p][2]};
    };
    std::vector<Point2> out;
    for (std::size_t k = p; k < n; ++k) {
        const double u0 = knots[k];
        const double u1 = knots[k + 1];
        if (!(u1 > u0)) continue;
        for (int s = out.empty() ? 0 : 1; s <= samplesPerSpan; ++s)
            out.push_back(at(k, u0 + (u1 - u0) * s / samplesPerSpan));
    }
    return out.empty() ? control : out;
}

} // namespace vekhost::flatten
