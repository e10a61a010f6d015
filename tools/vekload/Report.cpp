#include "Report.h"

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <map>
#include <ostream>
#include <sstream>
#include <unordered_set>

#include "Builder.h"
#include "Text.h"

namespace vekload {

namespace {
// Bytes held by tables, following shared meshes and polylines once each.
class ByteCounter {
public:
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
        if (value) total += static_cast<long long>(sizeof(veksg::StringValue));
        return total;
    }
    template <typename V>
    long long of(const V& value) const {
        return sizeof value;
    }
    template <typename V>
    long long of(const veksg::Container<int, V>& table) {
        long long total = 0;
        for (const V& value : table)
            total += of(value);
        return total;
    }

    long long of(const veksg::Hierarchy& lists) {
        return of(static_cast<const veksg::Container<int, std::vector<int>>&>(lists));
    }

private:
    std::unordered_set<const void*> seen;
};

long long sceneBytes(ByteCounter& count, const veksg::SCScene& s) {
    return static_cast<long long>(sizeof s) + count.of(s.meshes) + count.of(s.meshMaterials) +
           count.of(s.polylines) + count.of(s.polylineMaterials) + count.of(s.boxes) +
           count.of(s.transforms) + count.of(s.points) + count.of(s.textures) +
           count.of(s.links6a) + count.of(s.links7) + count.of(s.links8) + count.of(s.links6b) +
           count.of(s.fonts) + count.of(s.hierarchy) + count.of(s.texts) + count.of(s.textLinksA) +
           count.of(s.textLinksB);
}

long long topoBytes(ByteCounter& count, const veksg::SCSceneTopo& t) {
    long long total = static_cast<long long>(sizeof t) + count.of(t.nodes) + count.of(t.faces) +
                      count.of(t.surfaces) + count.of(t.edges) + count.of(t.curves) +
                      count.of(t.vertices) + count.of(t.nodeFlags);
    for (const auto* lists :
         {&t.nodeLists1,  &t.nodeLists2, &t.nodeLists3, &t.nodeLists4, &t.nodeLists5,
          &t.nodeLists6,  &t.nodeLists7, &t.nodeLists8, &t.nodeLists9, &t.nodeLists10,
          &t.nodeLists11, &t.faceLists1, &t.faceLists2, &t.faceLists3, &t.faceLists4,
          &t.edgeLists1,  &t.edgeLists2, &t.edgeLists3, &t.edgeLists4, &t.lists15a,
          &t.lists15b,    &t.lists13,    &t.lists14})
        total += count.of(*lists);
    for (const auto* refs : {&t.nodeRefs1, &t.nodeRefs2, &t.nodeRefs3, &t.nodeRefs4, &t.faceRefs1,
                             &t.faceRefs2, &t.edgeRefs1, &t.refs15a, &t.refs15b, &t.refs13a,
                             &t.refs13b, &t.refs14a, &t.refs14b, &t.refs14c})
        total += count.of(*refs);
    for (const auto& entry : t.namesByKey)
        total += static_cast<long long>(sizeof entry) + count.of(entry.second);
    return total;
}

long long resourceBytes(ByteCounter& count, const veksg::SCSceneRes& r) {
    return static_cast<long long>(sizeof r) + count.of(r.meshMaterials) +
           count.of(r.polylineMaterials) + count.of(r.textures) + count.of(r.boxes) +
           count.of(r.orientedBoxes) + count.of(r.transforms) + count.of(r.transformsB) +
           count.of(r.vertexInfos) + count.of(r.indexInfos) + count.of(r.indexLinks) +
           count.of(r.vertexLists) + count.of(r.primitivesA) + count.of(r.primALinks1) +
           count.of(r.indexLists1) + count.of(r.primALinks2) + count.of(r.primALinks3) +
           count.of(r.primitivesB) + count.of(r.primBLinks1) + count.of(r.indexLists2) +
           count.of(r.primBLinks2) + count.of(r.primitivesC) + count.of(r.primCLinks1) +
           count.of(r.indexLists3) + count.of(r.primCLinks2) + count.of(r.fonts) +
           count.of(r.fontLists) + count.of(r.texts) + count.of(r.textLinksA) +
           count.of(r.textLinksB);
}

long long runtimeBytes(ByteCounter& count, const veksg::SCSceneRT& rt) {
    long long total = static_cast<long long>(sizeof rt) + count.of(rt.nodeValues) +
                      count.of(rt.nodeLists) + count.of(rt.meshes.lists) +
                      count.of(rt.polylines.lists) + count.of(rt.vertices.lists) +
                      count.of(rt.texts.lists);
    for (const auto& bits : rt.visibility.sets)
        total += static_cast<long long>((bits.size() + 7) / 8);
    return total;
}

long long pmiBytes(ByteCounter& count, const veksg::SCPmi& p) {
    long long total = static_cast<long long>(sizeof p) + count.of(p.pmiBoxes);
    for (const auto* relation :
         {&p.relation1, &p.relation2, &p.relation3, &p.relation4, &p.relation5, &p.relation6,
          &p.relation7, &p.relation8, &p.relation9, &p.relation10, &p.relation11, &p.relation12,
          &p.relation13, &p.relation14})
        total += count.of(*relation);
    for (const auto* map : {&p.map1, &p.map2, &p.map3, &p.map4, &p.map5, &p.map6})
        total += count.of(*map);
    return total;
}

long long attributeBytes(ByteCounter& count, const veksg::SCAttributes& a) {
    long long total = static_cast<long long>(sizeof a) + count.of(a.attributes) +
                      count.of(a.attributeIndices) + count.of(a.flags);
    for (const auto& value : a.attributes)
        if (value) {
            total += static_cast<long long>((std::wcslen(value->key()) + 1) * sizeof(wchar_t));
            if (value->get())
                total +=
                    static_cast<long long>((std::wcslen(value->get().get()) + 1) * sizeof(wchar_t));
        }
    return total;
}

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
    Figures bytes = {
        {"SCScene", sceneBytes(count, *document.scene)},
        {"SCSceneTopo", topoBytes(count, *document.topo)},
        {"SCSceneRes", resourceBytes(count, *document.resources)},
        {"SCSceneRT", runtimeBytes(count, *document.runtime)},
        {"SCPmi", pmiBytes(count, *document.pmi)},
        {"SCView",
         static_cast<long long>(sizeof(veksg::SCView)) + count.of(document.views->orientations)},
        {"SCStates", static_cast<long long>(sizeof(veksg::SCStates))},
        {"SCTempGraphics", static_cast<long long>(sizeof(veksg::SCTempGraphics))},
        {"SCAttributes", attributeBytes(count, *document.attributes)},
        {"SCInfo",
         static_cast<long long>(sizeof(veksg::SCInfo)) + count.of(document.info->filePath)},
        {"SCLayer", static_cast<long long>(sizeof(veksg::SCLayer))},
    };
    long long layers = 0;
    for (const auto& layer : document.layers)
        layers += count.of(layer.name);
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
