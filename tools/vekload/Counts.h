#pragma once

#include "Report.h"

namespace vekload {

/// "Component.table" and its number of records, for the tables a load fills.
Figures recordCounts(const vekhost::Document& document);
/// Each component and the bytes its tables hold (a mesh shared by several keys counts once).
Figures componentBytes(const vekhost::Document& document);

} // namespace vekload
