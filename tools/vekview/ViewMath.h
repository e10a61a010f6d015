#pragma once

#include <array>
#include <cmath>

#include "Bounds.h"

// Vector arithmetic for the viewer, in double precision on the host library's types.
namespace vekview {

using vekhost::Matrix;
using vekhost::Vec3;
using Vec4 = std::array<double, 4>;

inline Vec3 operator+(const Vec3& a, const Vec3& b) {
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
inline Vec3 operator-(const Vec3& a, const Vec3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
inline Vec3 operator*(const Vec3& a, double s) {
    return {a[0] * s, a[1] * s, a[2] * s};
}
inline double dot(const Vec3& a, const Vec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
inline double length(const Vec3& v) {
    return std::sqrt(dot(v, v));
}
/// Unit length; the zero vector stays zero.
inline Vec3 normalized(const Vec3& v) {
    const double l = length(v);
    return l > 1e-300 ? v * (1.0 / l) : Vec3{0, 0, 0};
}

/// Matrix times a column vector (x, y, z, w).
Vec4 transform(const Matrix& m, const Vec4& v);
/// The inverse of a general 4x4 matrix; the identity when it has none.
Matrix inverse(const Matrix& m);
/// The matrix of a placement stored as 16 floats, column after column.
template <typename Floats>
Matrix matrixOf(const Floats& elements) {
    Matrix out;
    for (std::size_t i = 0; i < 16; ++i)
        out.m[i] = elements[static_cast<int>(i)];
    return out;
}
/// Column after column as OpenGL takes it.
std::array<float, 16> toFloats(const Matrix& m);

} // namespace vekview
