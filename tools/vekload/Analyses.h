#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Loader.h"
#include "Options.h"
#include "PlacedMesh.h"
#include "Report.h"

namespace vekload {

/// What a picture shows of an analysis: a value per vertex of the placed mesh (NaN for
/// none) on a ramp from `low` (blue) to `high` (red).
struct AnalysisColours {
    std::string title;
    std::vector<float> values;
    double low = 0;
    double high = 1;
};

struct AnalysisRun {
    /// The "analyses" section of the file's report; none when nothing was asked for.
    std::optional<ReportSection> section;
    vekhost::PlacedMesh mesh;
    /// Of the comparison, else the holes, else the thickness, else the draft, whichever of
    /// them was asked for.
    std::optional<AnalysisColours> colours;
};

/// Runs the analyses `request` asks for on a loaded file, filling its document's analysis
/// and feature components. `load` loads a reference to compare with. Throws what the
/// analyses and that load throw.
AnalysisRun runAnalyses(const vekhost::LoadResult& loaded, const AnalysisRequest& request,
                        const vekhost::LoadOptions& load);

} // namespace vekload
