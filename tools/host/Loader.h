#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "Document.h"
#include "Progress.h"

namespace vekhost {

class CadShapes;

struct LoadOptions {
    /// Chordal deflection of the tessellation in model units; 0 or less picks one from the
    /// model's size.
    double deflection = 0;
    /// Told how the load proceeds; not owned, null for none.
    Progress* progress = nullptr;
};

/// Seconds spent in each phase of a load.
struct PhaseTimes {
    double read = 0;
    double tessellate = 0;
    double fill = 0;
    double resize = 0;

    double total() const { return read + tessellate + fill + resize; }
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
};

/// Why a file could not be loaded; the message names the cause, not the file.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads, tessellates and fills one file; throws LoadError on bad input.
LoadResult loadFile(const std::string& path, const LoadOptions& options);
/// The built-in sample assembly, made with Open CASCADE primitives.
LoadResult loadSample(const LoadOptions& options);

/// Seconds since an arbitrary start, for phase timing.
double seconds();

} // namespace vekhost
