#pragma once

#include <array>

#include "Analyses.h"
#include "Render.h"

namespace vekload {

/// The colour of `value` on the ramp from `low` (blue) through cyan, green and yellow to
/// `high` (red); grey for NaN. Values beyond the ends take the end colours; `high` may be
/// below `low`, which turns the ramp round.
std::array<double, 3> rampColour(double value, double low, double high);

/// Draws the document with its faces coloured by an analysis, and the ramp with its numbers
/// and title in a strip on the right of the picture. `mesh` is the analysis's placed mesh:
/// its ranges say which values belong to which face.
Image renderAnalysis(const vekhost::Document& document, RenderOptions options,
                     const vekhost::PlacedMesh& mesh, const AnalysisColours& colours);

} // namespace vekload
