#pragma once

#include <functional>

#include "Document.h"
#include "PlacedMesh.h"
#include "RayScene.h"

namespace vekhost {

struct ThicknessSettings {
    /// Walls thinner than this count as thin; 0 counts none.
    double minimum = 0;
};

/// The wall thickness at every vertex of `mesh`: the distance along the inward normal to the
/// wall through which the ray leaves the material, cast over `scene` (made from `mesh`).
/// Faces the ray only grazes, such as the neighbours of an edge it starts on, do not count.
/// Results go to `document.thickness`; a vertex whose ray finds no wall gets -1.
void analyseThickness(Document& document, const PlacedMesh& mesh, const RayScene& scene,
                      const ThicknessSettings& settings);

/// The thickness at one point with its outward normal `normal` (unit), hits that `ignore`
/// names left out; -1 for none.
double wallThickness(const RayScene& scene, const Vec3& point, const Vec3& normal, double near,
                     const std::function<bool(int triangle, double distance)>& ignore);

} // namespace vekhost
