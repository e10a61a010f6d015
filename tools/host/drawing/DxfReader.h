#pragma once

#include <functional>
#include <istream>
#include <map>
#include <memory>
#include <string>

#include "DrawingBuilder.h"

namespace vekhost {

namespace dxf {
struct Content;
}

/// A DXF drawing, read with dxflib in two steps: `read` takes the file into an intermediate
/// form (DxfContent.h), `fill` expands its blocks and writes the records. Both throw
/// LoadError for bad input.
class DxfReader {
public:
    DxfReader();
    ~DxfReader();
    DxfReader(const DxfReader&) = delete;
    DxfReader& operator=(const DxfReader&) = delete;

    /// Reads the stream twice: a check of its group pairs (DxfGuard.h), then dxflib.
    /// `progress` is told the fraction done, 0 to 1, now and then.
    void read(std::istream& in, const std::function<void(double)>& progress);
    /// Model space, then each layout with entities, as sheets of one view each.
    void fill(DrawingBuilder& builder);
    /// Entities of the file that the data model cannot hold, by kind; each is named by its
    /// DXF kind, followed by what keeps it out where the kind itself is held.
    const std::map<std::string, long long>& notHeld() const;

private:
    std::unique_ptr<dxf::Content> content;
};

/// Reads a whole DXF drawing from a stream into `drawing`: `read` and `fill` in one.
/// Returns what the data model could not hold, as `notHeld`.
std::map<std::string, long long> readDxf(std::istream& in, vek2d::SCScene2D& drawing,
                                         DrawingLimits limits = {});

} // namespace vekhost
