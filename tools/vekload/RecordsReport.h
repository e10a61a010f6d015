#pragma once

#include <vector>

#include "Check.h"
#include "Document.h"
#include "Report.h"

namespace vekload {

/// The report's sections on the document-level records: "info" (SCInfo and the document's
/// attributes), "animation", "externalFiles" and "warnings" (missing files: the check's
/// warnings when `check` is given, else the document's own flags), each only when it has
/// something to say.
std::vector<ReportSection> recordSections(const vekhost::Document& document,
                                          const vekhost::CheckResult* check);

} // namespace vekload
