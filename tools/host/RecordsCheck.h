#pragma once

#include <string>
#include <vector>

#include "Document.h"

namespace vekhost {

/// What the check of the document-level records found.
struct RecordFindings {
    long long references = 0;
    std::vector<std::string> problems;
    /// Faults of the user's files rather than of the document: referenced files missing.
    std::vector<std::string> warnings;
};

/// The animation (each column names one existing node, one placement per column and key),
/// the external files (ids, roles and flags for each, every file and mesh an index names
/// exists) and the points (each primitive's node, buffer and range exist, the buffers list
/// their primitives and the primitives their buffers).
RecordFindings checkRecords(const Document& document);

} // namespace vekhost
