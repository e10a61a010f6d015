#pragma once

#include <iosfwd>

#include "Report.h"

namespace vekload {

/// The report of one loaded file for people: a line per topic, wrapped at 100 columns.
void printText(std::ostream& out, const FileReport& report);

} // namespace vekload
