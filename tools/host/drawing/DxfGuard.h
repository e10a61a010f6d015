#pragma once

#include <functional>
#include <istream>
#include <map>
#include <string>

namespace vekhost {

/// What one pass over a DXF file's group pairs finds before dxflib reads it.
struct DxfCensus {
    /// Entities by kind in the ENTITIES and BLOCKS sections, as the file names them.
    std::map<std::string, long long> kinds;
    long long pairs = 0;
    long long bytes = 0;
    /// $ACADVER and $DWGCODEPAGE of the header, empty when absent.
    std::string version;
    std::string codepage;
};

/// Reads the stream's group pairs once, without interpreting them, and throws LoadError
/// for what dxflib would misread, loop on forever or allocate for without bound: a binary
/// file, a line longer than dxflib's line buffer, a group code that is not a number, an
/// entity kind that DXF does not define and the file does not declare, an element count
/// larger than the file could hold, or a file cut short before its EOF marker.
/// `progress` is told the bytes read so far now and then. Leaves the stream at its end.
DxfCensus scanDxf(std::istream& in, const std::function<void(long long)>& progress);

} // namespace vekhost
