#pragma once

#include <vector>

#include "ViewMath.h"

namespace vekview {

/// The world directions a preset orientation of `SCView` puts on screen. Presets are stored
/// like placements, column after column, and take world coordinates to the viewer's: their
/// rows are the world directions of the picture's right, up and towards the viewer.
struct ViewAxes {
    Vec3 right{1, 0, 0};
    Vec3 up{0, 1, 0};
    Vec3 toward{0, 0, 1};
};
ViewAxes axesOfPreset(const Matrix& orientation);

/// Where the viewer looks from: an eye, the target it turns around and an up direction.
/// The orthographic projection shows a height of 2 d tan(fov / 2) at the target, d being the
/// distance from eye to target, so moving the eye zooms in both projections alike.
class Camera {
public:
    Vec3 eye{0, 0, 1};
    Vec3 target{0, 0, 0};
    Vec3 up{0, 1, 0};
    bool orthographic = true;
    /// Vertical field of view of the perspective projection, in radians.
    double fieldOfView = 0.5235987755982988;

    /// The sphere around everything drawn, which sets the near and far planes.
    void setScene(const Vec3& centre, double radius);
    ViewAxes axes() const;
    double distance() const;
    /// Height of the world seen at the target.
    double viewHeight() const;

    /// World to eye coordinates.
    Matrix view() const;
    /// Eye to clip coordinates for a viewport of this width over height.
    Matrix projection(double aspect) const;

    /// Turns the eye around the target: `right` radians about the screen's up axis, `down`
    /// about its right axis.
    void orbit(double right, double down);
    /// Moves eye and target across the screen by a fraction of the view's height.
    void pan(double right, double up);
    /// Scales the distance by `factor` (below 1 comes closer) while the point under
    /// (x, y), in normalized device coordinates, stays where it is on screen.
    void zoom(double factor, double x, double y, double aspect);
    /// Looks along a preset's axes from the same target and distance.
    void orient(const ViewAxes& axes);
    /// Keeps the direction and fits the points into a width x height picture with
    /// `margin` pixels left on every side, as the software pictures are fitted: the centre
    /// of their projected extent in the middle, the tighter direction filling its room.
    void fit(const std::vector<Vec3>& points, int width, int height, int margin);

    /// Where the ray through (x, y) in normalized device coordinates starts and where it
    /// goes, in world coordinates.
    void ray(double x, double y, double aspect, Vec3& origin, Vec3& direction) const;

private:
    Vec3 sceneCentre{0, 0, 0};
    double sceneRadius = 1;
};

} // namespace vekview
