#include "Report.h"

#include <cstdio>

#include "Counts.h"
#include "PmiReport.h"
#include "RecordsReport.h"

namespace vekload {

using vekhost::CheckResult;
using vekhost::LoadResult;

std::string formatNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

FileReport describe(const std::string& file, const LoadResult& result, const CheckResult* check) {
    FileReport report;
    report.file = file;
    report.ok = true;
    report.format = result.format;
    report.times = result.times;
    report.deflection = result.deflection;
    report.records = recordCounts(*result.document);
    report.bytes = componentBytes(*result.document);
    if (check) {
        report.checked = true;
        report.check = *check;
    }
    for (ReportSection& section : recordSections(*result.document, check))
        report.sections.push_back(std::move(section));
    for (ReportSection& section : pmiSections(*result.document))
        report.sections.push_back(std::move(section));
    return report;
}

} // namespace vekload
