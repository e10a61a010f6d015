#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "PlacedMesh.h"

namespace vekhost {

/// Intel Embree's ray and closest-point queries over the triangles of a `PlacedMesh`. The
/// only place where Embree is used; queries may run from several threads at once.
class RayScene {
public:
    /// Keeps a reference to `mesh`, which must outlive the scene.
    explicit RayScene(const PlacedMesh& mesh);
    ~RayScene();
    RayScene(const RayScene&) = delete;
    RayScene& operator=(const RayScene&) = delete;

    struct Hit {
        double distance = 0;
        int triangle = -1;
    };
    /// Decides whether a triangle the ray meets at `distance` counts, so that a ray passes
    /// the ones that do not.
    using Accept = std::function<bool(int triangle, double distance)>;
    /// The nearest accepted triangle along the unit `direction` beyond `near`.
    std::optional<Hit> cast(const Vec3& origin, const Vec3& direction, double near,
                            const Accept& accept) const;

    struct Nearest {
        Vec3 point{0, 0, 0};
        double distance = 0;
        int triangle = -1;
    };
    /// The point of the surface nearest to `point`; none for an empty scene.
    std::optional<Nearest> nearest(const Vec3& point) const;

    /// The triangle's normal: its vertices' normals averaged, else the winding's.
    Vec3 normal(int triangle) const;

private:
    struct Handles;
    const PlacedMesh& mesh;
    std::unique_ptr<Handles> handles;
};

} // namespace vekhost
