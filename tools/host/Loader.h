#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Document.h"
#include "LoadError.h"
#include "Reader.h"

namespace vekhost {

/// A phase of a load that is none of the four: a snapshot's read, verify, decompress, decode.
struct NamedPhase {
    std::string name;
    double seconds = 0;
};

/// Seconds spent in each phase of a load.
struct PhaseTimes {
    double read = 0;
    double tessellate = 0;
    double fill = 0;
    double resize = 0;
    /// Loads that run phases of their own (snapshots) report them here, in order, instead of
    /// the four above.
    std::vector<NamedPhase> named = {};

    double total() const;
    /// Fill and resize as a share of the whole load, 0 to 1.
    double fillResizeShare() const;
};

struct LoadResult {
    std::unique_ptr<Document> document;
    std::string format;
    PhaseTimes times;
    /// The deflection the CAD tessellation used; 0 for mesh files.
    double deflection = 0;
    /// The B-rep behind the topology records of a CAD load and the document it was read
    /// into (CadShapes.h); null for mesh files.
    std::shared_ptr<const CadShapes> shapes;
    /// What the file holds that the data model cannot, counted by kind (DXF entities).
    std::map<std::string, long long> notHeld;
};

/// Reads, tessellates and fills one file; throws LoadError on bad input.
LoadResult loadFile(const std::string& path, const LoadOptions& options);
/// The built-in sample assembly, made with Open CASCADE primitives.
LoadResult loadSample(const LoadOptions& options);
/// Runs the phases of `reader` for the file at `path` (empty for the built-in sample).
LoadResult runReader(Reader& reader, const std::string& path, const LoadOptions& options);

/// Seconds since an arbitrary start, for phase timing.
double seconds();

} // namespace vekhost
