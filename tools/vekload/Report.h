#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Check.h"
#include "Loader.h"

namespace vekload {

/// A part of a file's report that a feature adds (an analysis, PMI, drawings, document
/// info). Sections follow the parts every report has, in their order.
struct ReportSection {
    /// The section's key in the file's JSON object.
    std::string key;
    /// Its value, already written as JSON.
    std::string json;
    /// What stands before its first line in the text report, and the lines.
    std::string label;
    std::vector<std::string> lines;
};

using Figures = std::vector<std::pair<std::string, long long>>;

/// What the tool reports about one file, loaded or not.
struct FileReport {
    std::string file;
    bool ok = false;
    std::string error;
    std::string format;
    vekhost::PhaseTimes times;
    double deflection = 0;
    /// "Component.table" and its number of records.
    Figures records;
    /// Component and the bytes its tables hold (a mesh shared by several keys counts once).
    Figures bytes;
    bool checked = false;
    vekhost::CheckResult check;
    std::vector<ReportSection> sections;
};

/// The report of a loaded file; `check` may be null.
FileReport describe(const std::string& file, const vekhost::LoadResult& result,
                    const vekhost::CheckResult* check);

/// A number as both printers write it: six significant digits.
std::string formatNumber(double value);

} // namespace vekload
