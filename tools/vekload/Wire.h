#pragma once

#include <string>

#include "Report.h"

namespace vekload {

/// A line-based form that passes a report from a worker process to its parent.
std::string serialize(const FileReport& report);
FileReport deserialize(const std::string& text);

} // namespace vekload
