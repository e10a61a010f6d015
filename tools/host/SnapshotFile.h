#pragma once

#include <map>
#include <string>

#include "Loader.h"
#include "veksg/io/Snapshot.h"

namespace vekhost {

/// The primary table of each key space (KeySpaces.h) as snapshots name tables, for the
/// reader's check that no table keyed by a space holds more keys than the space has.
std::map<short, std::string> snapshotKeySpaces();

/// Writes every component of `document` and its layer table to `path` (`.vks`); `level` is
/// zstd's, 0 for none. Throws LoadError naming the cause.
veksg::io::WriteReport saveSnapshot(Document& document, const std::string& path, int level = 1);

/// Reads a snapshot that `saveSnapshot` wrote into a new document. Its phases are the
/// reader's own: read, verify, decompress, decode. Throws LoadError naming the cause.
LoadResult loadSnapshot(const std::string& path, const LoadOptions& options);

} // namespace vekhost
