#include "TextReport.h"

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

namespace vekload {

using vekhost::PhaseTimes;

namespace {
std::string milliseconds(const char* name, double seconds) {
    char text[64];
    std::snprintf(text, sizeof text, "%s %.1f ms", name, seconds * 1000);
    return text;
}

// Where the items after a line's label start.
constexpr std::size_t labelWidth = 11;

// Items after a label, wrapped under each other at 100 columns.
void printItems(std::ostream& out, const char* label, const std::vector<std::string>& items) {
    constexpr std::size_t width = 100;
    constexpr std::size_t indent = labelWidth;
    std::string line = std::string("  ") + label;
    line.resize(indent, ' ');
    std::size_t used = indent;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string item = items[i] + (i + 1 < items.size() ? "," : "");
        if (used > indent && used + 1 + item.size() > width) {
            out << line << '\n';
            line.assign(indent, ' ');
            used = indent;
        }
        if (used > indent) {
            line += ' ';
            ++used;
        }
        line += item;
        used += item.size();
    }
    out << line << '\n';
}

std::string readable(long long bytes) {
    char text[32];
    constexpr long long kibi = 1024;
    if (bytes < 10 * kibi)
        std::snprintf(text, sizeof text, "%lld B", bytes);
    else if (bytes < 10 * kibi * kibi)
        std::snprintf(text, sizeof text, "%lld KiB", bytes / kibi);
    else
        std::snprintf(text, sizeof text, "%lld MiB", bytes / (kibi * kibi));
    return text;
}

void printTimes(std::ostream& out, const PhaseTimes& t) {
    if (!t.named.empty()) {
        std::vector<std::string> items;
        for (const vekhost::NamedPhase& phase : t.named)
            items.push_back(milliseconds(phase.name.c_str(), phase.seconds));
        items.push_back(milliseconds("total", t.total()));
        printItems(out, "time", items);
        return;
    }
    char share[48];
    std::snprintf(share, sizeof share, "fill+resize %.1f%% of the total",
                  100.0 * t.fillResizeShare());
    printItems(out, "time",
               {milliseconds("read", t.read), milliseconds("tessellate", t.tessellate),
                milliseconds("fill", t.fill), milliseconds("resize", t.resize),
                milliseconds("total", t.total()), share});
}

// One group of lines per component, its tables named without the prefix.
void printRecords(std::ostream& out, const Figures& records) {
    std::vector<std::string> items;
    const char* label = "records";
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto& [name, count] = records[i];
        const std::size_t dot = name.find('.');
        const std::string component = name.substr(0, dot);
        items.push_back((items.empty() ? component + ": " : std::string()) + name.substr(dot + 1) +
                        ' ' + std::to_string(count));
        const bool last = i + 1 == records.size() ||
                          records[i + 1].first.compare(0, dot + 1, name, 0, dot + 1) != 0;
        if (!last) continue;
        printItems(out, label, items);
        label = "";
        items.clear();
    }
}

void printBytes(std::ostream& out, const Figures& bytes) {
    std::vector<std::string> items;
    long long total = 0;
    for (const auto& [name, count] : bytes) {
        items.push_back(name + ' ' + readable(count));
        total += count;
    }
    items.push_back("total " + readable(total));
    printItems(out, "bytes", items);
}

void printCheck(std::ostream& out, const vekhost::CheckResult& check) {
    std::string verdict = std::to_string(check.references) + " references, " +
                          (check.ok() ? std::string("all consistent")
                                      : std::to_string(check.problemCount) + " problem(s):");
    printItems(out, "check", {verdict});
    for (const std::string& problem : check.problems)
        out << "    " << problem << '\n';
}

// The lines under each other, the label before the first; a label too long for its column
// keeps a space after it.
void printSection(std::ostream& out, const ReportSection& section) {
    std::string label = "  " + section.label;
    label.resize(std::max(labelWidth, label.size() + 1), ' ');
    for (std::size_t i = 0; i < section.lines.size(); ++i)
        out << (i == 0 ? label : std::string(labelWidth, ' ')) << section.lines[i] << '\n';
}
} // namespace

void printText(std::ostream& out, const FileReport& report) {
    out << report.file << ": " << report.format;
    if (report.deflection > 0) out << ", deflection " << formatNumber(report.deflection);
    out << '\n';
    printTimes(out, report.times);
    printRecords(out, report.records);
    printBytes(out, report.bytes);
    if (report.checked) printCheck(out, report.check);
    for (const ReportSection& section : report.sections)
        printSection(out, section);
}

} // namespace vekload
