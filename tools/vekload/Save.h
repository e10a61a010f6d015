#pragma once

#include <string>

#include "Report.h"

namespace vekload {

/// Writes a snapshot of `document` to `path` and describes the write as a report section
/// ("saved"). Throws LoadError when the file cannot be written.
ReportSection saveDocument(vekhost::Document& document, const std::string& path, int level);

} // namespace vekload
