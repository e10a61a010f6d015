#include "Bounds.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vekhost {

Matrix Matrix::operator*(const Matrix& right) const {
    Matrix out;
    for (std::size_t col = 0; col < 4; ++col)
        for (std::size_t row = 0; row < 4; ++row) {
            double sum = 0;
            for (std::size_t k = 0; k < 4; ++k)
                sum += m[k * 4 + row] * right.m[col * 4 + k];
            out.m[col * 4 + row] = sum;
        }
    return out;
}

Vec3 Matrix::point(const Vec3& p) const {
    const Vec3 v = vector(p);
    return {v[0] + m[12], v[1] + m[13], v[2] + m[14]};
}

Vec3 Matrix::vector(const Vec3& v) const {
    return {m[0] * v[0] + m[4] * v[1] + m[8] * v[2], m[1] * v[0] + m[5] * v[1] + m[9] * v[2],
            m[2] * v[0] + m[6] * v[1] + m[10] * v[2]};
}

void Box3::add(const Vec3& p) {
    if (!valid) {
        min = max = p;
        valid = true;
        return;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        min[i] = std::min(min[i], p[i]);
        max[i] = std::max(max[i], p[i]);
    }
}

void Box3::add(const Box3& other) {
    if (!other.valid) return;
    add(other.min);
    add(other.max);
}

Box3 Box3::transformed(const Matrix& transform) const {
    Box3 out;
    if (!valid) return out;
    for (int corner = 0; corner < 8; ++corner)
        out.add(transform.point({corner & 1 ? max[0] : min[0], corner & 2 ? max[1] : min[1],
                                 corner & 4 ? max[2] : min[2]}));
    return out;
}

OrientedBox OrientedBox::transformed(const Matrix& transform) const {
    OrientedBox out;
    out.valid = valid;
    out.center = transform.point(center);
    for (std::size_t i = 0; i < 3; ++i)
        out.axes[i] = transform.vector(axes[i]);
    return out;
}

Box3 OrientedBox::box() const {
    Box3 out;
    if (!valid) return out;
    for (int corner = 0; corner < 8; ++corner) {
        Vec3 p = center;
        for (std::size_t i = 0; i < 3; ++i) {
            const double sign = corner & (1 << i) ? 1.0 : -1.0;
            for (std::size_t k = 0; k < 3; ++k)
                p[k] += sign * axes[i][k];
        }
        out.add(p);
    }
    return out;
}

OrientedBox OrientedBox::of(const Box3& box) {
    OrientedBox out;
    out.valid = box.valid;
    for (std::size_t i = 0; i < 3; ++i) {
        out.center[i] = (box.min[i] + box.max[i]) / 2;
        out.axes[i][i] = (box.max[i] - box.min[i]) / 2;
    }
    return out;
}

namespace {
// Cyclic Jacobi rotations on a symmetric 3x3 matrix; the columns of `vectors` end up as
// its eigenvectors.
void eigenvectors(double a[3][3], double vectors[3][3]) {
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            vectors[i][j] = i == j ? 1.0 : 0.0;
    for (int sweep = 0; sweep < 50; ++sweep) {
        const double off = a[0][1] * a[0][1] + a[0][2] * a[0][2] + a[1][2] * a[1][2];
        if (off < 1e-30) return;
        for (int p = 0; p < 2; ++p)
            for (int q = p + 1; q < 3; ++q) {
                if (std::fabs(a[p][q]) < 1e-300) continue;
                const double theta = (a[q][q] - a[p][p]) / (2 * a[p][q]);
                const double t =
                    (theta >= 0 ? 1.0 : -1.0) / (std::fabs(theta) + std::sqrt(theta * theta + 1));
                const double c = 1 / std::sqrt(t * t + 1);
                const double s = t * c;
                for (int k = 0; k < 3; ++k) {
                    const double akp = a[k][p];
                    const double akq = a[k][q];
                    a[k][p] = c * akp - s * akq;
                    a[k][q] = s * akp + c * akq;
                }
                for (int k = 0; k < 3; ++k) {
                    const double apk = a[p][k];
                    const double aqk = a[q][k];
                    a[p][k] = c * apk - s * aqk;
                    a[q][k] = s * apk + c * aqk;
                }
                for (int k = 0; k < 3; ++k) {
                    const double vkp = vectors[k][p];
                    const double vkq = vectors[k][q];
                    vectors[k][p] = c * vkp - s * vkq;
                    vectors[k][q] = s * vkp + c * vkq;
                }
            }
    }
}

// Visits every `step`-th point.
template <typename Visit>
void forEachPoint(const std::vector<PointRun>& runs, std::size_t step, Visit visit) {
    for (const PointRun& run : runs)
        for (std::size_t i = 0; i < run.count; i += step) {
            const float* p = run.data + i * run.stride;
            visit(Vec3{p[0], p[1], p[2]});
        }
}
} // namespace

OrientedBox fittedBox(const std::vector<PointRun>& runs) {
    OrientedBox out;
    std::size_t total = 0;
    for (const PointRun& run : runs)
        total += run.count;
    if (total == 0) return out;
    // The axes come from a sample of the points, which fixes them as well as all of them
    // would for any surface worth a box; the extents then come from every point.
    constexpr std::size_t samples = 8192;
    const std::size_t step = std::max<std::size_t>(1, total / samples);

    // Sums taken relative to one of the points keep their precision far from the origin.
    Vec3 origin{0, 0, 0};
    bool first = true;
    double count = 0;
    Vec3 sum{0, 0, 0};
    double products[3][3] = {};
    forEachPoint(runs, step, [&](const Vec3& p) {
        if (first) origin = p;
        first = false;
        count += 1;
        for (std::size_t i = 0; i < 3; ++i) {
            sum[i] += p[i] - origin[i];
            for (std::size_t j = 0; j < 3; ++j)
                products[i][j] += (p[i] - origin[i]) * (p[j] - origin[j]);
        }
    });
    Vec3 mean;
    double covariance[3][3];
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t j = 0; j < 3; ++j)
            covariance[i][j] = products[i][j] / count - sum[i] * sum[j] / (count * count);
    for (std::size_t i = 0; i < 3; ++i)
        mean[i] = origin[i] + sum[i] / count;
    double axes[3][3];
    eigenvectors(covariance, axes);

    Vec3 low;
    Vec3 high;
    low.fill(std::numeric_limits<double>::max());
    high.fill(std::numeric_limits<double>::lowest());
    Box3 aligned;
    forEachPoint(runs, 1, [&](const Vec3& p) {
        aligned.add(p);
        for (std::size_t a = 0; a < 3; ++a) {
            double along = 0;
            for (std::size_t k = 0; k < 3; ++k)
                along += (p[k] - mean[k]) * axes[k][a];
            low[a] = std::min(low[a], along);
            high[a] = std::max(high[a], along);
        }
    });
    // Parts modelled along the axes often fit their axis-aligned box best; keep the smaller.
    double principalVolume = 1;
    double alignedVolume = 1;
    for (std::size_t a = 0; a < 3; ++a) {
        principalVolume *= high[a] - low[a];
        alignedVolume *= aligned.max[a] - aligned.min[a];
    }
    if (alignedVolume <= principalVolume) return OrientedBox::of(aligned);
    out.center = mean;
    for (std::size_t a = 0; a < 3; ++a) {
        const double middle = (low[a] + high[a]) / 2;
        const double half = (high[a] - low[a]) / 2;
        for (std::size_t k = 0; k < 3; ++k) {
            out.center[k] += middle * axes[k][a];
            out.axes[a][k] = half * axes[k][a];
        }
    }
    out.valid = true;
    return out;
}

} // namespace vekhost
