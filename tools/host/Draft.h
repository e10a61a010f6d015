#pragma once

#include "Document.h"
#include "PlacedMesh.h"

namespace vekhost {

/// How a face stands to the pull direction, as `SCDraftAngleAnalysis::codes` stores it.
enum class DraftClass : int {
    insufficient = 0, ///< every vertex between -minimum and minimum
    positive = 1,     ///< every vertex at least minimum
    negative = -1,    ///< every vertex at most -minimum
    mixed = 2,        ///< vertices of more than one class
    none = 3,         ///< no triangles, or no normals
};

const char* draftClassName(DraftClass draftClass);

struct DraftSettings {
    /// The direction the part leaves its mould in; need not be of unit length.
    Vec3 pull{0, 0, 1};
    /// Degrees.
    double minimum = 1;
};

/// The draft angle at every vertex of `mesh` (90 degrees less the angle between the surface
/// normal and the pull), each face's extremes and class, into `document.draft`. Throws
/// std::invalid_argument for a pull of zero length.
void analyseDraft(Document& document, const PlacedMesh& mesh, const DraftSettings& settings);

} // namespace vekhost
