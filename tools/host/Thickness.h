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
/// Walls the ray enters rather than leaves do not count, nor, within the start's triangle,
/// the faces next to the start's, so that a ray from an edge never meets a wall of zero.
/// Results go to `document.thickness`; a vertex whose ray finds no wall gets -1.
void analyseThickness(Document& document, const PlacedMesh& mesh, const RayScene& scene,
                      const ThicknessSettings& settings);

/// The thickness at one point with its outward normal `normal` (unit), hits that `ignore`
/// names left out; -1 for none.
double wallThickness(const RayScene& scene, const Vec3& point, const Vec3& normal, double near,
                     const std::function<bool(int triangle, double distance)>& ignore);

} // namespace vekhost
