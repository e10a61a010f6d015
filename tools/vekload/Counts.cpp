#include "Counts.h"

#include <array>
#include <cstdint>
#include <cwchar>
#include <map>
#include <type_traits>
#include <unordered_set>

#include "Builder.h"
#include "veksg/Tables.h"

namespace vekload {

using vekhost::Document;
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
    // The drawing's records and what they own.
    static long long wideBytes(const std::wstring& text) {
        return static_cast<long long>(text.size()) * static_cast<long long>(sizeof(wchar_t));
    }
    static long long pointsOf(const std::vector<veksg::Point3>& points) {
        return static_cast<long long>(points.size()) *
               static_cast<long long>(sizeof(veksg::Point3));
    }
    long long of(const vek2d::Entity& entity) const {
        return static_cast<long long>(sizeof entity) + pointsOf(entity.points) +
               pointsOf(entity.points2);
    }
    long long of(const vek2d::HatchPattern& hatch) const {
        long long total = sizeof hatch;
        for (const auto& loop : hatch.loops)
            total += static_cast<long long>(sizeof(std::vector<veksg::Point3>)) + pointsOf(loop);
        return total;
    }
    long long of(const veksg::Text& text) const {
        return static_cast<long long>(sizeof text) + wideBytes(text.text);
    }
    long long of(const vek2d::View& view) const {
        return static_cast<long long>(sizeof view) + wideBytes(view.name);
    }
    long long of(const vek2d::Sheet& sheet) const {
        return static_cast<long long>(sizeof sheet) + wideBytes(sheet.name);
    }
    template <typename V>
    long long of(const V& value) const {
        return sizeof value;
    }

    std::unordered_set<const void*> seen;
};

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
    long long cloud = 0;
    for (const auto& buffer : res.vertexInfos)
        if (buffer) cloud += buffer->count;
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
        {"SCSceneRes.vertexInfos", res.vertexInfos.size()},
        {"SCSceneRes.vertexInfos.points", cloud},
        {"SCSceneRes.primitivesC", res.primitivesC.size()},
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

} // namespace vekload
