#include "Report.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <map>
#include <ostream>
#include <sstream>
#include <type_traits>
#include <unordered_set>

#include "Builder.h"
#include "Text.h"
#include "veksg/Tables.h"

namespace vekload {

using vekhost::CheckResult;
using vekhost::Document;
using vekhost::jsonEscape;
using vekhost::LoadResult;
using vekhost::PhaseTimes;
using vekhost::vertexCount;

namespace {
// Bytes held by a component: the object itself and what its tables hold on the heap,
// following shared meshes and polylines once each. Host-owned objects behind shared pointers
// outside tables are not the document's and are not counted.
class ByteCounter {
public:
    template <typename Component>
    long long component(const Component& c) {
        return static_cast<long long>(sizeof c) + heldBy(c);
    }

private:
    template <typename T>
    struct isTable : std::false_type {};
    template <typename V>
    struct isTable<veksg::Container<int, V>> : std::true_type {};
    template <typename V>
    struct isTable<std::vector<V>> : std::true_type {};

    // What a record with a catalogue holds beyond its own bytes.
    template <typename Record>
    long long heldBy(const Record& record) {
        long long total = 0;
        veksg::forEachTable(
            record, [&](const veksg::TableInfo&, const auto& member) { total += heldIn(member); });
        return total;
    }

    template <typename Member>
    long long heldIn(const Member& member) {
        if constexpr (veksg::hasTables<Member>) {
            return heldBy(member);
        } else if constexpr (std::is_same_v<Member, veksg::Hierarchy>) {
            return heldIn(static_cast<const veksg::Container<int, std::vector<int>>&>(member));
        } else if constexpr (std::is_same_v<Member, std::vector<bool>>) {
            return static_cast<long long>((member.size() + 7) / 8);
        } else if constexpr (std::is_same_v<Member, std::array<std::vector<bool>, 8>> ||
                             std::is_same_v<Member, std::array<std::vector<int>, 11>> ||
                             std::is_same_v<Member, std::array<std::vector<std::uint32_t>, 4>>) {
            long long total = 0;
            for (const auto& element : member)
                total += heldIn(element);
            return total;
        } else if constexpr (isTable<Member>::value) {
            long long total = 0;
            for (const auto& value : member)
                total += of(value);
            return total;
        } else if constexpr (std::is_same_v<Member, std::map<int, std::wstring>>) {
            long long total = 0;
            for (const auto& entry : member)
                total += static_cast<long long>(sizeof entry) + of(entry.second);
            return total;
        } else if constexpr (std::is_same_v<Member, std::wstring>) {
            return of(member);
        } else {
            return 0;
        }
    }

    // The bytes one table entry takes, with what it owns.
    long long of(const std::vector<int>& list) const {
        const std::size_t bytes = sizeof(std::vector<int>) + list.size() * sizeof(int);
        return static_cast<long long>(bytes);
    }
    long long of(const std::wstring& text) const {
        const std::size_t bytes = sizeof(std::wstring) + text.size() * sizeof(wchar_t);
        return static_cast<long long>(bytes);
    }
    long long of(const veksg::Node& node) const {
        return static_cast<long long>(sizeof node) + of(std::wstring(node.name())) -
               static_cast<long long>(sizeof(std::wstring));
    }
    long long of(const std::shared_ptr<veksg::Mesh>& mesh) {
        long long total = sizeof mesh;
        if (mesh && seen.insert(mesh.get()).second)
            total += static_cast<long long>(
                sizeof(veksg::Mesh) + mesh->vn.size() * sizeof(veksg::VN) +
                mesh->vnc.size() * sizeof(veksg::VNC) + mesh->vnt.size() * sizeof(veksg::VNT));
        return total;
    }
    long long of(const std::shared_ptr<veksg::Polyline>& line) {
        long long total = sizeof line;
        if (line && seen.insert(line.get()).second)
            total += static_cast<long long>(sizeof(veksg::Polyline) +
                                            line->points.size() * sizeof(veksg::Point3) +
                                            line->values.size() * sizeof(int));
        return total;
    }
    long long of(const std::shared_ptr<veksg::StringValue>& value) const {
        long long total = sizeof value;
        if (!value) return total;
        total += static_cast<long long>(sizeof(veksg::StringValue) +
                                        (std::wcslen(value->key()) + 1) * sizeof(wchar_t));
        if (value->get())
            total +=
                static_cast<long long>((std::wcslen(value->get().get()) + 1) * sizeof(wchar_t));
        return total;
    }
    template <typename V>
    long long of(const V& value) const {
        return sizeof value;
    }

    std::unordered_set<const void*> seen;
};

std::string milliseconds(const char* name, double seconds) {
    char text[64];
    std::snprintf(text, sizeof text, "%s %.1f ms", name, seconds * 1000);
    return text;
}

// Items after a label, wrapped under each other at 100 columns.
void printItems(std::ostream& out, const char* label, const std::vector<std::string>& items) {
    constexpr std::size_t width = 100;
    constexpr std::size_t indent = 11;
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

std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return text;
}

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
} // namespace

Figures recordCounts(const Document& document) {
    const auto& topo = *document.topo;
    const auto& scene = *document.scene;
    const auto& res = *document.resources;
    long long vertices = 0;
    for (const auto& mesh : scene.meshes)
        if (mesh) vertices += vertexCount(*mesh);
    long long points = 0;
    for (const auto& line : scene.polylines)
        if (line) points += static_cast<long long>(line->points.size());
    return {
        {"SCSceneTopo.nodes", topo.nodes.size()},
        {"SCSceneTopo.faces", topo.faces.size()},
        {"SCSceneTopo.edges", topo.edges.size()},
        {"SCSceneTopo.vertices", topo.vertices.size()},
        {"SCSceneTopo.surfaces", topo.surfaces.size()},
        {"SCSceneTopo.curves", topo.curves.size()},
        {"SCScene.meshes", scene.meshes.size()},
        {"SCScene.meshes.triangles", vertices / 3},
        {"SCScene.polylines", scene.polylines.size()},
        {"SCScene.polylines.points", points},
        {"SCScene.meshMaterials", scene.meshMaterials.size()},
        {"SCScene.transforms", scene.transforms.size()},
        {"SCScene.boxes", scene.boxes.size()},
        {"SCSceneRes.primitivesA", res.primitivesA.size()},
        {"SCSceneRes.primitivesB", res.primitivesB.size()},
        {"SCSceneRes.orientedBoxes", res.orientedBoxes.size()},
        {"SCAttributes.attributes", document.attributes->attributes.size()},
        {"SCPmi.pmis", document.pmi->pmis.size()},
        {"Document.layers", document.layers.size()},
    };
}

Figures componentBytes(const Document& document) {
    ByteCounter count;
    Figures bytes;
    for (const auto& component : document.components())
        veksg::visitComponent(*component, [&](const auto& concrete) {
            bytes.emplace_back(veksg::componentName(concrete), count.component(concrete));
        });
    long long layers = 0;
    for (const auto& layer : document.layers)
        layers +=
            static_cast<long long>(sizeof(std::wstring) + layer.name.size() * sizeof(wchar_t));
    bytes.emplace_back("Document.layers", layers);
    return bytes;
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
    return report;
}

void printText(std::ostream& out, const FileReport& report) {
    out << report.file << ": " << report.format;
    if (report.deflection > 0) out << ", deflection " << number(report.deflection);
    out << '\n';
    const PhaseTimes& t = report.times;
    char share[48];
    std::snprintf(share, sizeof share, "fill+resize %.1f%% of the total",
                  100.0 * t.fillResizeShare());
    printItems(out, "time",
               {milliseconds("read", t.read), milliseconds("tessellate", t.tessellate),
                milliseconds("fill", t.fill), milliseconds("resize", t.resize),
                milliseconds("total", t.total()), share});
    // One group of lines per component, its tables named without the prefix.
    std::vector<std::string> items;
    const char* label = "records";
    for (std::size_t i = 0; i < report.records.size(); ++i) {
        const auto& [name, count] = report.records[i];
        const std::size_t dot = name.find('.');
        const std::string component = name.substr(0, dot);
        items.push_back((items.empty() ? component + ": " : std::string()) + name.substr(dot + 1) +
                        ' ' + std::to_string(count));
        const bool last = i + 1 == report.records.size() ||
                          report.records[i + 1].first.compare(0, dot + 1, name, 0, dot + 1) != 0;
        if (!last) continue;
        printItems(out, label, items);
        label = "";
        items.clear();
    }
    long long total = 0;
    for (const auto& [name, count] : report.bytes) {
        items.push_back(name + ' ' + readable(count));
        total += count;
    }
    items.push_back("total " + readable(total));
    printItems(out, "bytes", items);
    if (!report.checked) return;
    std::string verdict =
        std::to_string(report.check.references) + " references, " +
        (report.check.ok() ? std::string("all consistent")
                           : std::to_string(report.check.problemCount) + " problem(s):");
    printItems(out, "check", {verdict});
    for (const std::string& problem : report.check.problems)
        out << "    " << problem << '\n';
}

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
            << "\", \"deflection\": " << number(r.deflection)
            << ",\n   \"seconds\": {\"read\": " << number(r.times.read)
            << ", \"tessellate\": " << number(r.times.tessellate)
            << ", \"fill\": " << number(r.times.fill) << ", \"resize\": " << number(r.times.resize)
            << ", \"total\": " << number(r.times.total())
            << "}, \"fillResizeShare\": " << number(r.times.fillResizeShare());
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

std::string serialize(const FileReport& report) {
    std::ostringstream out;
    out.precision(17);
    out << "file\t" << escape(report.file) << "\nok\t" << report.ok << "\nerror\t"
        << escape(report.error) << "\nformat\t" << escape(report.format) << "\ntimes\t"
        << report.times.read << '\t' << report.times.tessellate << '\t' << report.times.fill << '\t'
        << report.times.resize << "\ndeflection\t" << report.deflection << '\n';
    for (const auto& [name, count] : report.records)
        out << "record\t" << escape(name) << '\t' << count << '\n';
    for (const auto& [name, count] : report.bytes)
        out << "bytes\t" << escape(name) << '\t' << count << '\n';
    if (report.checked) {
        out << "check\t" << report.check.references << '\t' << report.check.problemCount << '\n';
        for (const std::string& problem : report.check.problems)
            out << "problem\t" << escape(problem) << '\n';
    }
    return out.str();
}

FileReport deserialize(const std::string& text) {
    FileReport report;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        std::vector<std::string> fields;
        std::size_t start = 0;
        for (std::size_t tab = line.find('\t'); tab != std::string::npos;
             tab = line.find('\t', start)) {
            fields.push_back(line.substr(start, tab - start));
            start = tab + 1;
        }
        fields.push_back(line.substr(start));
        const std::string& kind = fields[0];
        auto field = [&fields](std::size_t i) { return i < fields.size() ? fields[i] : ""; };
        auto integer = [&](std::size_t i) { return std::atoll(field(i).c_str()); };
        auto real = [&](std::size_t i) { return std::strtod(field(i).c_str(), nullptr); };
        if (kind == "file") report.file = unescape(field(1));
        if (kind == "ok") report.ok = integer(1) != 0;
        if (kind == "error") report.error = unescape(field(1));
        if (kind == "format") report.format = unescape(field(1));
        if (kind == "times") report.times = {real(1), real(2), real(3), real(4)};
        if (kind == "deflection") report.deflection = real(1);
        if (kind == "record") report.records.emplace_back(unescape(field(1)), integer(2));
        if (kind == "bytes") report.bytes.emplace_back(unescape(field(1)), integer(2));
        if (kind == "check") {
            report.checked = true;
            report.check.references = integer(1);
            report.check.problemCount = integer(2);
        }
        if (kind == "problem") report.check.problems.push_back(unescape(field(1)));
    }
    return report;
}

} // namespace vekload
