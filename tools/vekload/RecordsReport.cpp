#include "RecordsReport.h"

#include <sstream>
#include <string>

#include "Animation.h"
#include "DocumentInfo.h"
#include "ExternalFiles.h"
#include "Text.h"

namespace vekload {

using vekhost::jsonEscape;
using vekhost::utf8FromWide;

namespace {
std::string quoted(const std::string& text) {
    return '"' + jsonEscape(text) + '"';
}

std::string unitText(int unit) {
    const std::string name = vekhost::lengthUnitName(unit);
    return name.empty() ? "none" : name;
}

std::string unitJson(int unit) {
    const std::string name = vekhost::lengthUnitName(unit);
    return name.empty() ? "null" : quoted(name);
}

ReportSection info(const vekhost::Document& document) {
    const veksg::SCInfo& info = *document.info;
    const auto& attributes = *document.attributes;
    std::ostringstream json;
    json << "{\"unit\": " << unitJson(info.info0) << ", \"fileUnit\": " << unitJson(info.info1)
         << ", \"tolerance\": " << formatNumber(info.tolerance) << ", \"entities\": " << info.info2
         << ", \"roots\": " << info.info3 << ", \"animations\": " << info.info4
         << ", \"attributes\": [";
    ReportSection section{"info", "", "info", {}};
    std::string line = "unit " + unitText(info.info0) + ", file unit " + unitText(info.info1) +
                       ", tolerance " + formatNumber(info.tolerance);
    if (info.info2 > 0) line += ", entities " + std::to_string(info.info2);
    if (info.info3 >= 0) line += ", roots " + std::to_string(info.info3);
    if (info.info4 > 0) line += ", animations " + std::to_string(info.info4);
    section.lines.push_back(line);
    const char* separator = "";
    // The document's own attributes are those that name no node.
    for (int a = 0; a < attributes.attributes.size(); ++a) {
        const auto& value = attributes.attributes.getValue(a);
        if (!value || (a < attributes.attributeIndices.size() &&
                       !attributes.attributeIndices.getValue(a).empty()))
            continue;
        const std::string key = utf8FromWide(value->key());
        const std::string text = value->get() ? utf8FromWide(value->get().get()) : std::string();
        json << separator << "{\"key\": " << quoted(key) << ", \"value\": " << quoted(text) << '}';
        separator = ", ";
        section.lines.push_back(key);
        section.lines.back().append(": ").append(text);
    }
    json << "]}";
    section.json = json.str();
    return section;
}

ReportSection animation(const vekhost::Document& document) {
    const auto& keys = document.animation->keys;
    const std::size_t nodes = vekhost::animatedNodes(document).size();
    const int start = *keys.begin();
    const int end = *keys.rbegin();
    std::ostringstream json;
    json << "{\"keys\": " << keys.size() << ", \"start\": " << start << ", \"end\": " << end
         << ", \"nodes\": " << nodes << '}';
    return {"animation",
            json.str(),
            "animation",
            {std::to_string(keys.size()) + (keys.size() == 1 ? " key" : " keys") + " from " +
             std::to_string(start) + " to " + std::to_string(end) + " ms, " +
             std::to_string(nodes) + (nodes == 1 ? " node" : " nodes") + " moved"}};
}

ReportSection files(const vekhost::Document& document) {
    const veksg::SCExtFile& ext = *document.extFiles;
    ReportSection section{"externalFiles", "[", "files", {}};
    for (int k = 0; k < ext.files.size(); ++k) {
        const std::string path = utf8FromWide(ext.files.getValue(k).path);
        const auto index = static_cast<std::size_t>(k);
        const std::string role = index < ext.names.size() ? utf8FromWide(ext.names[index]) : "";
        const bool found = k < ext.flags.size() && ext.flags.getValue(k) != 0;
        section.json += std::string(k ? ", " : "") + "{\"path\": " + quoted(path) +
                        ", \"role\": " + quoted(role) +
                        ", \"found\": " + (found ? "true" : "false") + '}';
        section.lines.push_back(role);
        section.lines.back().append(" ").append(path).append(found ? "" : " (missing)");
    }
    section.json += ']';
    return section;
}
} // namespace

std::vector<ReportSection> recordSections(const vekhost::Document& document,
                                          const vekhost::CheckResult* check) {
    std::vector<ReportSection> sections{info(document)};
    if (!document.animation->keys.empty()) sections.push_back(animation(document));
    if (document.extFiles->files.size() > 0) sections.push_back(files(document));
    const std::vector<std::string> warnings =
        check ? check->warnings : vekhost::missingFileWarnings(document);
    if (!warnings.empty()) {
        ReportSection section{"warnings", "[", "warnings", warnings};
        for (std::size_t w = 0; w < warnings.size(); ++w)
            section.json += (w ? ", " : "") + quoted(warnings[w]);
        section.json += ']';
        sections.push_back(section);
    }
    return sections;
}

} // namespace vekload
