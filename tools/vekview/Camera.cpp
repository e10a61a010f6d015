#include "Camera.h"

#include <algorithm>
#include <limits>

namespace vekview {

namespace {
// Rodrigues' rotation of `v` about the unit axis `k`.
Vec3 rotate(const Vec3& v, const Vec3& k, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return v * c + cross(k, v) * s + k * (dot(k, v) * (1 - c));
}
} // namespace

ViewAxes axesOfPreset(const Matrix& orientation) {
    const auto& m = orientation.m;
    return {normalized({m[0], m[4], m[8]}), normalized({m[1], m[5], m[9]}),
            normalized({m[2], m[6], m[10]})};
}

void Camera::setScene(const Vec3& centre, double radius) {
    sceneCentre = centre;
    sceneRadius = radius > 0 && std::isfinite(radius) ? radius : 1.0;
}

ViewAxes Camera::axes() const {
    const Vec3 forward = normalized(target - eye);
    const Vec3 right = normalized(cross(forward, up));
    return {right, cross(right, forward), forward * -1.0};
}

double Camera::distance() const {
    return length(eye - target);
}

double Camera::viewHeight() const {
    return 2 * distance() * std::tan(fieldOfView / 2);
}

Matrix Camera::view() const {
    const ViewAxes a = axes();
    Matrix out;
    for (std::size_t i = 0; i < 3; ++i) {
        out.m[i * 4 + 0] = a.right[i];
        out.m[i * 4 + 1] = a.up[i];
        out.m[i * 4 + 2] = a.toward[i];
    }
    out.m[12] = -dot(a.right, eye);
    out.m[13] = -dot(a.up, eye);
    out.m[14] = -dot(a.toward, eye);
    return out;
}

Matrix Camera::projection(double aspect) const {
    // Near and far hug the scene's sphere, which keeps the depth buffer's resolution on it.
    const double centreDepth = dot(sceneCentre - eye, axes().toward * -1.0);
    double nearPlane = centreDepth - 1.05 * sceneRadius;
    const double farPlane = std::max(centreDepth + 1.05 * sceneRadius, nearPlane + 1e-9);
    Matrix out;
    if (orthographic) {
        const double h = viewHeight() / 2;
        const double w = h * aspect;
        out.m[0] = 1 / w;
        out.m[5] = 1 / h;
        out.m[10] = -2 / (farPlane - nearPlane);
        out.m[14] = -(farPlane + nearPlane) / (farPlane - nearPlane);
        return out;
    }
    const double far = std::max(farPlane, 1e-6);
    nearPlane = std::max(nearPlane, far * 1e-4);
    const double t = 1 / std::tan(fieldOfView / 2);
    out.m[0] = t / aspect;
    out.m[5] = t;
    out.m[10] = -(far + nearPlane) / (far - nearPlane);
    out.m[11] = -1;
    out.m[14] = -2 * far * nearPlane / (far - nearPlane);
    out.m[15] = 0;
    return out;
}

void Camera::orbit(double right, double down) {
    ViewAxes a = axes();
    Vec3 offset = rotate(eye - target, a.up, -right);
    Vec3 newUp = a.up;
    const Vec3 newRight = rotate(a.right, a.up, -right);
    offset = rotate(offset, newRight, -down);
    newUp = rotate(newUp, newRight, -down);
    eye = target + offset;
    up = newUp;
}

void Camera::pan(double right, double upward) {
    const ViewAxes a = axes();
    const Vec3 shift = (a.right * right + a.up * upward) * -viewHeight();
    eye = eye + shift;
    target = target + shift;
}

void Camera::zoom(double factor, double x, double y, double aspect) {
    if (!(factor > 0) || !std::isfinite(factor)) return;
    const ViewAxes a = axes();
    const double half = viewHeight() / 2;
    const Vec3 offset = a.right * (x * aspect * half) + a.up * (y * half);
    const Vec3 newTarget = target + offset * (1 - factor);
    eye = newTarget + (eye - target) * factor;
    target = newTarget;
}

void Camera::orient(const ViewAxes& a) {
    eye = target + a.toward * distance();
    up = a.up;
}

void Camera::fit(const std::vector<Vec3>& points, int width, int height, int margin) {
    if (points.empty() || width < 1 || height < 1) return;
    const ViewAxes a = axes();
    constexpr double big = std::numeric_limits<double>::max();
    Vec3 low{big, big, big};
    Vec3 high{-big, -big, -big};
    for (const Vec3& p : points) {
        const Vec3 q{dot(p, a.right), dot(p, a.up), dot(p, a.toward)};
        for (std::size_t i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], q[i]);
            high[i] = std::max(high[i], q[i]);
        }
    }
    const double roomX = std::max(1.0, width - 2.0 * margin);
    const double roomY = std::max(1.0, height - 2.0 * margin);
    // A flat model is fitted by its other direction; a point by any scale.
    const double largest = std::max({high[0] - low[0], high[1] - low[1], 1e-30});
    const double scale = std::min(roomX / std::max(high[0] - low[0], largest * 1e-6),
                                  roomY / std::max(high[1] - low[1], largest * 1e-6));
    if (!std::isfinite(scale) || !(scale > 0)) return;
    const double shown = height / scale;
    double d = shown / (2 * std::tan(fieldOfView / 2));
    // In perspective the front of the model is nearer than the target and looks larger.
    if (!orthographic) d += (high[2] - low[2]) / 2;
    target = a.right * ((low[0] + high[0]) / 2) + a.up * ((low[1] + high[1]) / 2) +
             a.toward * ((low[2] + high[2]) / 2);
    eye = target + a.toward * d;
    up = a.up;
}

} // namespace vekview
