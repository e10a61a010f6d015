#include "JsonReport.h"

#include <ostream>

#include "Text.h"

namespace vekload {

using vekhost::jsonEscape;

namespace {
void printTimes(std::ostream& out, const vekhost::PhaseTimes& times) {
    if (!times.named.empty()) {
        out << ",\n   \"seconds\": {";
        for (const vekhost::NamedPhase& phase : times.named)
            out << '"' << jsonEscape(phase.name) << "\": " << formatNumber(phase.seconds) << ", ";
        out << "\"total\": " << formatNumber(times.total()) << '}';
        return;
    }
    out << ",\n   \"seconds\": {\"read\": " << formatNumber(times.read)
        << ", \"tessellate\": " << formatNumber(times.tessellate)
        << ", \"fill\": " << formatNumber(times.fill)
        << ", \"resize\": " << formatNumber(times.resize)
        << ", \"total\": " << formatNumber(times.total())
        << "}, \"fillResizeShare\": " << formatNumber(times.fillResizeShare());
}

void printFigures(std::ostream& out, const char* key, const Figures& figures) {
    out << ",\n   \"" << key << "\": {";
    const char* separator = "";
    for (const auto& [name, count] : figures) {
        out << separator << '"' << jsonEscape(name) << "\": " << count;
        separator = ", ";
    }
    out << '}';
}

void printCheck(std::ostream& out, const vekhost::CheckResult& check) {
    out << ",\n   \"check\": {\"references\": " << check.references
        << ", \"problemCount\": " << check.problemCount << ", \"problems\": [";
    for (std::size_t p = 0; p < check.problems.size(); ++p)
        out << (p ? ", \"" : "\"") << jsonEscape(check.problems[p]) << '"';
    out << "]}";
}

// The members of a file's object after "ok".
void printLoaded(std::ostream& out, const FileReport& r) {
    out << ", \"format\": \"" << jsonEscape(r.format)
        << "\", \"deflection\": " << formatNumber(r.deflection);
    printTimes(out, r.times);
    printFigures(out, "records", r.records);
    printFigures(out, "bytes", r.bytes);
    if (r.checked) printCheck(out, r.check);
    for (const ReportSection& section : r.sections)
        out << ",\n   \"" << jsonEscape(section.key) << "\": " << section.json;
}
} // namespace

void printJson(std::ostream& out, const std::vector<FileReport>& reports) {
    out << "{\"files\": [";
    for (std::size_t i = 0; i < reports.size(); ++i) {
        const FileReport& r = reports[i];
        out << (i ? ",\n  " : "\n  ") << "{\"file\": \"" << jsonEscape(r.file)
            << "\", \"ok\": " << (r.ok ? "true" : "false");
        if (r.ok)
            printLoaded(out, r);
        else
            out << ", \"error\": \"" << jsonEscape(r.error) << '"';
        out << '}';
    }
    out << "\n]}\n";
}

} // namespace vekload
