#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Check.h"
#include "Loader.h"

namespace vekload {

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
};

/// The report of a loaded file; `check` may be null.
FileReport describe(const std::string& file, const vekhost::LoadResult& result,
                    const vekhost::CheckResult* check);

/// A number as both printers write it: six significant digits.
std::string formatNumber(double value);

} // namespace vekload
