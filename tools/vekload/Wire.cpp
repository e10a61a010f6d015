#include "Wire.h"

#include <cstdlib>
#include <sstream>
#include <vector>

namespace vekload {

namespace {
// Tabs and line breaks separate the fields of the serialized form.
std::string escape(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == '\\' || c == '\t' || c == '\n') {
            out += '\\';
            out += c == '\t' ? 't' : c == '\n' ? 'n' : '\\';
        } else {
            out += c;
        }
    }
    return out;
}

std::string unescape(const std::string& text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            const char c = text[++i];
            out += c == 't' ? '\t' : c == 'n' ? '\n' : c;
        } else {
            out += text[i];
        }
    }
    return out;
}
std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    std::size_t start = 0;
    for (std::size_t tab = line.find('\t'); tab != std::string::npos;
         tab = line.find('\t', start)) {
        fields.push_back(line.substr(start, tab - start));
        start = tab + 1;
    }
    fields.push_back(line.substr(start));
    return fields;
}

void readLine(const std::vector<std::string>& fields, FileReport& report) {
    const std::string& kind = fields[0];
    auto field = [&fields](std::size_t i) { return i < fields.size() ? fields[i] : ""; };
    auto text = [&](std::size_t i) { return unescape(field(i)); };
    auto integer = [&](std::size_t i) { return std::atoll(field(i).c_str()); };
    auto real = [&](std::size_t i) { return std::strtod(field(i).c_str(), nullptr); };
    if (kind == "file") report.file = text(1);
    if (kind == "ok") report.ok = integer(1) != 0;
    if (kind == "error") report.error = text(1);
    if (kind == "format") report.format = text(1);
    if (kind == "times") report.times = {real(1), real(2), real(3), real(4)};
    if (kind == "phase") report.times.named.push_back({text(1), real(2)});
    if (kind == "deflection") report.deflection = real(1);
    if (kind == "record") report.records.emplace_back(text(1), integer(2));
    if (kind == "bytes") report.bytes.emplace_back(text(1), integer(2));
    if (kind == "check") {
        report.checked = true;
        report.check.references = integer(1);
        report.check.problemCount = integer(2);
    }
    if (kind == "problem") report.check.problems.push_back(text(1));
    if (kind == "section") report.sections.push_back({text(1), text(2), text(3), {}});
    if (kind == "sectionLine" && !report.sections.empty())
        report.sections.back().lines.push_back(text(1));
}
} // namespace

std::string serialize(const FileReport& report) {
    std::ostringstream out;
    out.precision(17);
    out << "file\t" << escape(report.file) << "\nok\t" << report.ok << "\nerror\t"
        << escape(report.error) << "\nformat\t" << escape(report.format) << "\ntimes\t"
        << report.times.read << '\t' << report.times.tessellate << '\t' << report.times.fill << '\t'
        << report.times.resize << "\ndeflection\t" << report.deflection << '\n';
    for (const vekhost::NamedPhase& phase : report.times.named)
        out << "phase\t" << escape(phase.name) << '\t' << phase.seconds << '\n';
    for (const auto& [name, count] : report.records)
        out << "record\t" << escape(name) << '\t' << count << '\n';
    for (const auto& [name, count] : report.bytes)
        out << "bytes\t" << escape(name) << '\t' << count << '\n';
    if (report.checked) {
        out << "check\t" << report.check.references << '\t' << report.check.problemCount << '\n';
        for (const std::string& problem : report.check.problems)
            out << "problem\t" << escape(problem) << '\n';
    }
    // A section's lines follow it.
    for (const ReportSection& section : report.sections) {
        out << "section\t" << escape(section.key) << '\t' << escape(section.json) << '\t'
            << escape(section.label) << '\n';
        for (const std::string& line : section.lines)
            out << "sectionLine\t" << escape(line) << '\n';
    }
    return out.str();
}

FileReport deserialize(const std::string& text) {
    FileReport report;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line))
        readLine(fieldsOf(line), report);
    return report;
}

} // namespace vekload
