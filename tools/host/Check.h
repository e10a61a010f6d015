#pragma once

#include <string>
#include <vector>

#include "Document.h"

namespace vekhost {

struct CheckResult {
    /// Keys and ranges looked at.
    long long references = 0;
    long long problemCount = 0;
    /// The first problems found, each described in one line.
    std::vector<std::string> problems;
    /// What is wrong with the user's files rather than with the document (a referenced file
    /// missing); warnings do not make a check fail.
    std::vector<std::string> warnings;

    bool ok() const { return problemCount == 0; }
};

/// Walks a filled and resized document and verifies every cross-reference: keys in
/// relation lists and links exist in their tables and the relations agree both ways,
/// primitive ranges lie inside their mesh or polyline, side tables cover their key spaces,
/// the run-time visibility sets match the key ranges, the document-level records hold
/// together (RecordsCheck.h), and so do the PMI's relations and maps (PmiCheck.h).
CheckResult checkDocument(Document& document);

} // namespace vekhost
