#include "PmiReport.h"

#include <cwchar>
#include <map>
#include <sstream>
#include <string>

#include "PmiReader.h"
#include "Text.h"

namespace vekload {

using vekhost::jsonEscape;
using vekhost::utf8FromWide;

namespace {
std::string jsonText(const std::wstring& text) {
    return '"' + jsonEscape(utf8FromWide(text)) + '"';
}

template <typename List>
std::string keyList(const List& keys) {
    std::string text;
    for (const int key : keys)
        text += (text.empty() ? "" : ", ") + std::to_string(key);
    return text;
}

std::string pointJson(const veksg::Point3& p) {
    return "[" + formatNumber(p[0]) + ", " + formatNumber(p[1]) + ", " + formatNumber(p[2]) + "]";
}

const std::vector<int>& listAt(const veksg::Hierarchy& relation, int key) {
    static const std::vector<int> none;
    return key < relation.size() ? relation.getValue(key) : none;
}

// The annotation's semantic values, by name.
std::map<std::wstring, std::wstring> attributesOf(const veksg::SCPmi& pmi, int key) {
    std::map<std::wstring, std::wstring> values;
    for (const int attribute : listAt(pmi.relation5, key)) {
        if (attribute < 0 || attribute >= pmi.pmiAttributes.size()) continue;
        const auto& value = pmi.pmiAttributes.getValue(attribute);
        if (value && value->get()) values[value->key()] = value->get().get();
    }
    return values;
}

std::wstring textOf(veksg::PMI& annotation) {
    if (auto* measure = dynamic_cast<veksg::Measure*>(&annotation)) return measure->measureText;
    if (auto* leader = dynamic_cast<veksg::Text3DLeader*>(&annotation))
        return leader->text3d ? leader->text3d->text : std::wstring();
    if (auto* text = dynamic_cast<veksg::Text3D*>(&annotation)) return text->text;
    return annotation.name();
}

std::string numberJson(const std::map<std::wstring, std::wstring>& values, const wchar_t* name) {
    const auto found = values.find(name);
    if (found == values.end() || found->second.empty()) return "null";
    return formatNumber(std::wcstod(found->second.c_str(), nullptr));
}

ReportSection annotations(const veksg::SCPmi& pmi) {
    ReportSection section{"pmi", "", "PMI", {}};
    std::ostringstream json;
    json << '[';
    const char* separator = "";
    for (int key = 0; key < pmi.pmis.size(); ++key) {
        const auto& annotation = pmi.pmis.getValue(key);
        if (!annotation) continue;
        const auto values = attributesOf(pmi, key);
        const auto kind = values.find(vekhost::pmiattr::type);
        const std::wstring kindText = kind == values.end() ? L"" : kind->second;
        const std::wstring text = textOf(*annotation);
        std::vector<int> faces = listAt(pmi.relation4, key);
        const auto& second = listAt(pmi.relation6, key);
        faces.insert(faces.end(), second.begin(), second.end());
        std::string datums;
        const auto letters = values.find(vekhost::pmiattr::datums);
        if (letters != values.end()) {
            std::wstringstream split(letters->second);
            std::wstring letter;
            while (std::getline(split, letter, L','))
                datums += (datums.empty() ? "" : ", ") + jsonText(letter);
        }
        json << separator << "{\"kind\": " << jsonText(kindText) << ", \"text\": " << jsonText(text)
             << ", \"value\": " << numberJson(values, vekhost::pmiattr::nominal)
             << ", \"upper\": " << numberJson(values, vekhost::pmiattr::upper)
             << ", \"lower\": " << numberJson(values, vekhost::pmiattr::lower) << ", \"datums\": ["
             << datums << "], \"faces\": [" << keyList(faces) << "]}";
        separator = ", ";
        section.lines.push_back(utf8FromWide(kindText) + " \"" + utf8FromWide(text) +
                                "\" on faces " + (faces.empty() ? "none" : keyList(faces)));
    }
    json << ']';
    section.json = json.str();
    return section;
}

ReportSection views(const veksg::SCPmi& pmi) {
    ReportSection section{"views", "", "saved views", {}};
    std::ostringstream json;
    json << '[';
    const char* separator = "";
    for (int key = 0; key < pmi.views.size(); ++key) {
        const auto& view = pmi.views.getValue(key);
        if (!view) continue;
        const std::wstring name = view->name();
        json << separator << "{\"name\": " << jsonText(name)
             << ", \"position\": " << pointJson(view->position)
             << ", \"target\": " << pointJson(view->target) << ", \"up\": " << pointJson(view->up)
             << ", \"pmi\": [" << keyList(listAt(pmi.relation9, key)) << "], \"nodes\": ["
             << keyList(listAt(pmi.relation8, key)) << "], \"sections\": ["
             << keyList(listAt(pmi.relation10, key)) << "]}";
        separator = ", ";
        section.lines.push_back(
            utf8FromWide(name) + ": " + std::to_string(listAt(pmi.relation9, key).size()) +
            " annotations, " + std::to_string(listAt(pmi.relation8, key).size()) + " nodes, " +
            std::to_string(listAt(pmi.relation10, key).size()) + " sections");
    }
    json << ']';
    section.json = json.str();
    return section;
}
} // namespace

std::vector<ReportSection> pmiSections(const vekhost::Document& document) {
    std::vector<ReportSection> sections;
    if (document.pmi->pmis.size() > 0) sections.push_back(annotations(*document.pmi));
    if (document.pmi->views.size() > 0) sections.push_back(views(*document.pmi));
    return sections;
}

} // namespace vekload
