#include "JsonReport.h"

#include <ostream>

#include "Text.h"

namespace vekload {

using vekhost::jsonEscape;

void printJson(std::ostream& out, const std::vector<FileReport>& reports) {
    out << "{\"files\": [";
    for (std::size_t i = 0; i < reports.size(); ++i) {
        const FileReport& r = reports[i];
        out << (i ? ",\n  " : "\n  ") << "{\"file\": \"" << jsonEscape(r.file)
            << "\", \"ok\": " << (r.ok ? "true" : "false");
        if (!r.ok) {
            out << ", \"error\": \"" << jsonEscape(r.error) << "\"}";
            continue;
        }
        out << ", \"format\": \"" << jsonEscape(r.format)
            << "\", \"deflection\": " << formatNumber(r.deflection)
            << ",\n   \"seconds\": {\"read\": " << formatNumber(r.times.read)
            << ", \"tessellate\": " << formatNumber(r.times.tessellate)
            << ", \"fill\": " << formatNumber(r.times.fill)
            << ", \"resize\": " << formatNumber(r.times.resize)
            << ", \"total\": " << formatNumber(r.times.total())
            << "}, \"fillResizeShare\": " << formatNumber(r.times.fillResizeShare());
        for (const auto* figures : {&r.records, &r.bytes}) {
            out << ",\n   \"" << (figures == &r.records ? "records" : "bytes") << "\": {";
            const char* separator = "";
            for (const auto& [name, count] : *figures) {
                out << separator << '"' << jsonEscape(name) << "\": " << count;
                separator = ", ";
            }
            out << '}';
        }
        if (r.checked) {
            out << ",\n   \"check\": {\"references\": " << r.check.references
                << ", \"problemCount\": " << r.check.problemCount << ", \"problems\": [";
            for (std::size_t p = 0; p < r.check.problems.size(); ++p)
                out << (p ? ", \"" : "\"") << jsonEscape(r.check.problems[p]) << '"';
            out << "]}";
        }
        out << '}';
    }
    out << "\n]}\n";
}

} // namespace vekload
