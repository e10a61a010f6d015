#pragma once

#include <array>
#include <cstddef>
#include <vector>

// Placements and boxes in double precision, before they are stored as floats.
namespace vekhost {

using Vec3 = std::array<double, 3>;

/// 4x4 transform in the data model's element order: column after column, so the
/// translation is in elements 12, 13 and 14.
struct Matrix {
    std::array<double, 16> m{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    Matrix operator*(const Matrix& right) const;
    Vec3 point(const Vec3& p) const;
    /// Applies the linear part only.
    Vec3 vector(const Vec3& v) const;
    bool isIdentity() const { return *this == Matrix(); }
    bool operator==(const Matrix& other) const { return m == other.m; }
};

struct Box3 {
    Vec3 min{0, 0, 0};
    Vec3 max{0, 0, 0};
    bool valid = false;

    void add(const Vec3& p);
    void add(const Box3& other);
    /// The box around the eight transformed corners.
    Box3 transformed(const Matrix& transform) const;
};

/// A centre and three half-extent vectors.
struct OrientedBox {
    Vec3 center{0, 0, 0};
    std::array<Vec3, 3> axes{};
    bool valid = false;

    OrientedBox transformed(const Matrix& transform) const;
    Box3 box() const;
    static OrientedBox of(const Box3& box);
};

/// Points given as `count` runs of three floats, `stride` floats apart.
struct PointRun {
    const float* data = nullptr;
    std::size_t count = 0;
    std::size_t stride = 3;
};

/// The smaller of two boxes around the points: the one along their principal axes (the
/// covariance's eigenvectors), which fits tilted and elongated parts, and the axis-aligned
/// one, which fits parts modelled along the axes.
OrientedBox fittedBox(const std::vector<PointRun>& runs);

} // namespace vekhost
