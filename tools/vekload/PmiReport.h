#pragma once

#include <vector>

#include "Document.h"
#include "Report.h"

namespace vekload {

/// The report's sections on PMI: "pmi", one object per annotation with its kind, text,
/// value, upper and lower tolerance, datums and faces; and "views", the saved views with
/// their camera and what they show. Each only when the document has any.
std::vector<ReportSection> pmiSections(const vekhost::Document& document);

} // namespace vekload
