#pragma once

#include <string>

#include "Loader.h"
#include "Options.h"
#include "Report.h"

namespace vekload {

/// What `--drawing` did, for the report.
struct DrawingWork {
    /// "exact" or "polygonal" when views were projected; empty for a file's own drawing.
    std::string hiddenLines;
    double scale = 0;
    double projectSeconds = 0;
    double drawSeconds = 0;
};

/// For `--drawing`: projects a CAD load's views into its document's drawing, then writes
/// the drawing's first sheet to the file. Throws std::runtime_error (a mesh file has no
/// B-rep to project, a picture that cannot be written).
DrawingWork makeDrawing(vekhost::LoadResult& result, const std::string& label,
                        const Options& options);

/// The report's "drawing" section: the records of `SCScene2D` per table, what the file
/// held that the records cannot, and the drawing's work when there was some. Empty (no
/// key) for a load without a drawing.
ReportSection drawingSection(const vekhost::LoadResult& result, const DrawingWork* work);

} // namespace vekload
