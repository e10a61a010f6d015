#pragma once

#include <iosfwd>
#include <vector>

#include "Report.h"

namespace vekload {

/// One JSON document, `{"files": [...]}`, with an object per file, loaded or not.
void printJson(std::ostream& out, const std::vector<FileReport>& reports);

} // namespace vekload
