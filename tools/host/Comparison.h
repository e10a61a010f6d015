#pragma once

#include <string>
#include <vector>

#include "Document.h"
#include "PlacedMesh.h"
#include "RayScene.h"

namespace vekhost {

struct ComparisonResult {
    /// Per vertex of the compared mesh: the distance to the reference's surface, positive
    /// on the side its normals point to (outside), negative inside.
    std::vector<float> distances;
    double min = 0;
    double max = 0;
    double mean = 0;
    /// Root mean square.
    double rms = 0;
};

/// The signed distance from every vertex of `mesh` to the nearest point of `reference` (a
/// scene made from the reference's mesh). Both are placed in the world. Records the files
/// in `document.comparison`: `referenceFile` and `document`'s own.
ComparisonResult compareWith(Document& document, const PlacedMesh& mesh, const RayScene& reference,
                             const std::wstring& referenceFile);

} // namespace vekhost
