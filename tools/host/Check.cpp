#include "Check.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>

#include "Builder.h"
#include "DrawingCheck.h"
#include "KeySpaces.h"
#include "RecordsCheck.h"
#include "veksg/Tables.h"

namespace vekhost {

namespace {
using Lists = veksg::Container<int, std::vector<int>>;

// Keyed tables (and hierarchies) grow with `resizeToFitKey`; bit sets and plain lists do not.
template <typename T, typename = void>
struct isKeyedTable : std::false_type {};
template <typename T>
struct isKeyedTable<T, std::void_t<decltype(std::declval<T&>().resizeToFitKey(0, {}))>>
    : std::true_type {};
using Links = veksg::Container<int, int>;

constexpr std::size_t shownProblems = 20;

class Checker {
public:
    explicit Checker(Document& document) : doc(document) {}

    CheckResult run() {
        entities();
        relations();
        primitives();
        sideTables();
        visibility();
        records();
        checkDrawing(*doc.drawing, result);
        return std::move(result);
    }

private:
    void problem(const std::string& text) {
        if (result.problems.size() < shownProblems) result.problems.push_back(text);
        ++result.problemCount;
    }

    static std::string at(const char* table, int key) {
        return std::string(table) + "[" + std::to_string(key) + "]";
    }

    // One key seen in `table` at `owner`, naming a record of a table of `size` records.
    void key(const char* table, int owner, int value, int size, bool noneAllowed) {
        ++result.references;
        if (value >= 0 && value < size) return;
        if (value == -1 && noneAllowed) return;
        problem(at(table, owner) + " names key " + std::to_string(value) + " of a table of " +
                std::to_string(size));
    }

    void lists(const char* table, const Lists& lists, int size) {
        for (int owner = 0; owner < lists.size(); ++owner)
            for (const int value : lists.getValue(owner))
                key(table, owner, value, size, false);
    }

    void links(const char* table, const Links& links, int size, bool noneAllowed) {
        for (int owner = 0; owner < links.size(); ++owner)
            key(table, owner, links.getValue(owner), size, noneAllowed);
    }

    // Every child listed under an owner points back at that owner.
    template <typename BackOf>
    void pointsBack(const char* table, const Lists& lists, const char* backTable, BackOf backOf) {
        for (int owner = 0; owner < lists.size(); ++owner)
            for (const int child : lists.getValue(owner)) {
                ++result.references;
                if (backOf(child) != owner)
                    problem(at(table, owner) + " lists " + std::to_string(child) + " but " +
                            at(backTable, child) + " is " + std::to_string(backOf(child)));
            }
    }

    void pointsBack(const char* table, const Lists& lists, const char* backTable,
                    const Links& back) {
        pointsBack(table, lists, backTable, [&back](int child) {
            return child >= 0 && child < back.size() ? back.getValue(child) : -2;
        });
    }

    // Every record whose link names an owner is listed under that owner.
    void listedUnder(const char* backTable, const Links& back, const char* table,
                     const Lists& lists) {
        for (int child = 0; child < back.size(); ++child) {
            const int owner = back.getValue(child);
            if (owner < 0) continue;
            ++result.references;
            const bool listed =
                owner < lists.size() &&
                std::find(lists.getValue(owner).begin(), lists.getValue(owner).end(), child) !=
                    lists.getValue(owner).end();
            if (!listed)
                problem(at(backTable, child) + " is " + std::to_string(owner) + " but " +
                        at(table, owner) + " does not list " + std::to_string(child));
        }
    }

    // Two lists that state one relation from both sides.
    void mutual(const char* forwardTable, const Lists& forward, const char* backTable,
                const Lists& back) {
        auto listed = [](const Lists& lists, int owner, int child) {
            if (owner < 0 || owner >= lists.size()) return false;
            const auto& children = lists.getValue(owner);
            return std::find(children.begin(), children.end(), child) != children.end();
        };
        for (int owner = 0; owner < forward.size(); ++owner)
            for (const int child : forward.getValue(owner)) {
                ++result.references;
                if (!listed(back, child, owner))
                    problem(at(forwardTable, owner) + " lists " + std::to_string(child) + " but " +
                            at(backTable, child) + " does not list " + std::to_string(owner));
            }
    }

    void records() {
        RecordFindings found = checkRecords(doc);
        result.references += found.references;
        for (const std::string& text : found.problems)
            problem(text);
        result.warnings = std::move(found.warnings);
    }

    void entities();
    void relations();
    void primitives();
    template <typename Record>
    void keySpaceTables(const std::string& owner, Record& record);
    void sideTable(const std::string& name, int size, int needed, bool exact);
    void sideTables();
    void visibility();

    Document& doc;
    CheckResult result;
};

template <typename Record>
void idsOf(const veksg::Container<int, Record>& table, std::vector<int>& out) {
    out.clear();
    for (const Record& record : table)
        out.push_back(record.id);
}

void Checker::entities() {
    auto& topo = *doc.topo;
    std::vector<int> found;
    auto sameKeys = [&](const char* table) {
        for (int k = 0; k < static_cast<int>(found.size()); ++k) {
            ++result.references;
            if (found[static_cast<std::size_t>(k)] != k)
                problem(at(table, k) + " has id " +
                        std::to_string(found[static_cast<std::size_t>(k)]));
        }
    };
    idsOf(topo.nodes, found);
    sameKeys("SCSceneTopo.nodes");
    idsOf(topo.faces, found);
    sameKeys("SCSceneTopo.faces");
    idsOf(topo.edges, found);
    sameKeys("SCSceneTopo.edges");
    idsOf(topo.vertices, found);
    sameKeys("SCSceneTopo.vertices");
    idsOf(topo.surfaces, found);
    sameKeys("SCSceneTopo.surfaces");
    idsOf(topo.curves, found);
    sameKeys("SCSceneTopo.curves");

    const int nodes = topo.nodes.size();
    for (int n = 0; n < nodes; ++n)
        key("SCSceneTopo.nodes.ref", n, topo.nodes.getValue(n).ref, nodes, true);
    for (int e = 0; e < topo.edges.size(); ++e)
        key("SCSceneTopo.edges.ref", e, topo.edges.getValue(e).ref, nodes, false);
    for (int m = 0; m < doc.scene->meshes.size(); ++m) {
        ++result.references;
        if (!doc.scene->meshes.getValue(m)) problem(at("SCScene.meshes", m) + " is null");
    }
    for (int p = 0; p < doc.scene->polylines.size(); ++p) {
        ++result.references;
        if (!doc.scene->polylines.getValue(p)) problem(at("SCScene.polylines", p) + " is null");
    }
}

void Checker::relations() {
    auto& topo = *doc.topo;
    auto& scene = *doc.scene;
    const int nodes = topo.nodes.size();
    const int faces = topo.faces.size();
    const int edges = topo.edges.size();
    const int vertices = topo.vertices.size();

    links("SCSceneTopo.nodeRefs1", topo.nodeRefs1, nodes, true);
    lists("SCSceneTopo.nodeLists3", topo.nodeLists3, nodes);
    lists("SCSceneTopo.nodeLists4", topo.nodeLists4, faces);
    lists("SCSceneTopo.nodeLists5", topo.nodeLists5, edges);
    lists("SCSceneTopo.nodeLists6", topo.nodeLists6, vertices);
    lists("SCSceneTopo.nodeLists7", topo.nodeLists7, scene.polylines.size());
    lists("SCSceneTopo.nodeLists8", topo.nodeLists8, doc.layers.size());
    lists("SCSceneTopo.nodeLists10", topo.nodeLists10, doc.attributes->attributes.size());
    links("SCSceneTopo.faceRefs1", topo.faceRefs1, topo.surfaces.size(), true);
    links("SCSceneTopo.faceRefs2", topo.faceRefs2, nodes, true);
    lists("SCSceneTopo.faceLists2", topo.faceLists2, edges);
    links("SCSceneTopo.edgeRefs1", topo.edgeRefs1, topo.curves.size(), true);
    lists("SCSceneTopo.edgeLists2", topo.edgeLists2, vertices);
    lists("SCSceneTopo.edgeLists3", topo.edgeLists3, faces);
    links("SCSceneTopo.refs13a", topo.refs13a, nodes, true);
    lists("SCSceneTopo.lists13", topo.lists13, edges);
    links("SCSceneTopo.refs14a", topo.refs14a, faces, true);
    lists("SCSceneTopo.lists14", topo.lists14, faces);
    links("SCSceneTopo.refs15a", topo.refs15a, edges, true);
    lists("SCSceneTopo.lists15a", topo.lists15a, edges);
    lists("SCSceneTopo.nodeLists9", topo.nodeLists9, scene.meshes.size());
    lists("SCScene.hierarchy", scene.hierarchy, nodes);
    links("SCScene.links6a", scene.links6a, nodes, true);
    links("SCScene.links6b", scene.links6b, faces, true);
    links("SCScene.links7", scene.links7, nodes, true);
    links("SCScene.links8", scene.links8, nodes, true);
    lists("SCAttributes.attributeIndices", doc.attributes->attributeIndices, nodes);

    pointsBack("SCSceneTopo.nodeLists3", topo.nodeLists3, "SCSceneTopo.nodeRefs1", topo.nodeRefs1);
    pointsBack("SCSceneTopo.nodeLists4", topo.nodeLists4, "SCSceneTopo.faceRefs2", topo.faceRefs2);
    pointsBack("SCSceneTopo.nodeLists5", topo.nodeLists5, "SCSceneTopo.edges.ref", [&topo](int e) {
        return e >= 0 && e < topo.edges.size() ? topo.edges.getValue(e).ref : -2;
    });
    pointsBack("SCSceneTopo.nodeLists6", topo.nodeLists6, "SCSceneTopo.refs13a", topo.refs13a);
    pointsBack("SCSceneTopo.nodeLists7", topo.nodeLists7, "SCScene.links7", scene.links7);
    pointsBack("SCScene.hierarchy", scene.hierarchy, "SCSceneTopo.nodeRefs1", topo.nodeRefs1);
    pointsBack("SCSceneTopo.nodeLists9", topo.nodeLists9, "SCScene.links6a", scene.links6a);
    pointsBack("SCSceneTopo.lists14", topo.lists14, "SCSceneTopo.faceRefs1", topo.faceRefs1);
    pointsBack("SCSceneTopo.lists15a", topo.lists15a, "SCSceneTopo.edgeRefs1", topo.edgeRefs1);
    listedUnder("SCSceneTopo.nodeRefs1", topo.nodeRefs1, "SCSceneTopo.nodeLists3", topo.nodeLists3);
    listedUnder("SCSceneTopo.nodeRefs1", topo.nodeRefs1, "SCScene.hierarchy", scene.hierarchy);
    listedUnder("SCSceneTopo.faceRefs2", topo.faceRefs2, "SCSceneTopo.nodeLists4", topo.nodeLists4);
    listedUnder("SCSceneTopo.refs13a", topo.refs13a, "SCSceneTopo.nodeLists6", topo.nodeLists6);
    listedUnder("SCScene.links6a", scene.links6a, "SCSceneTopo.nodeLists9", topo.nodeLists9);
    listedUnder("SCScene.links7", scene.links7, "SCSceneTopo.nodeLists7", topo.nodeLists7);
    mutual("SCSceneTopo.faceLists2", topo.faceLists2, "SCSceneTopo.edgeLists3", topo.edgeLists3);
    mutual("SCSceneTopo.edgeLists3", topo.edgeLists3, "SCSceneTopo.faceLists2", topo.faceLists2);
    mutual("SCSceneTopo.edgeLists2", topo.edgeLists2, "SCSceneTopo.lists13", topo.lists13);
    mutual("SCSceneTopo.lists13", topo.lists13, "SCSceneTopo.edgeLists2", topo.edgeLists2);
    // Every node hangs under a parent that comes before it.
    for (int n = 0; n < std::min(nodes, topo.nodeRefs1.size()); ++n) {
        const int parent = topo.nodeRefs1.getValue(n);
        ++result.references;
        if (parent >= n) problem(at("SCSceneTopo.nodeRefs1", n) + " names a later node");
    }
}

void Checker::primitives() {
    auto& scene = *doc.scene;
    auto& res = *doc.resources;
    auto& topo = *doc.topo;
    const int meshes = scene.meshes.size();
    const int polylines = scene.polylines.size();
    auto range = [&](const char* table, int p, const veksg::PrimitiveInfo& info, int owner,
                     int available, int multiple) {
        ++result.references;
        const bool inside = info.first >= 0 && info.count >= 0 &&
                            info.first <= available - info.count && info.first % multiple == 0 &&
                            info.count % multiple == 0;
        if (!inside || (owner < 0 && info.count > 0))
            problem(at(table, p) + " covers " + std::to_string(info.first) + "+" +
                    std::to_string(info.count) + " of " + std::to_string(available) +
                    " in its owner " + std::to_string(owner));
    };
    for (int p = 0; p < res.primitivesA.size(); ++p) {
        const veksg::PrimitiveInfo& info = res.primitivesA.getValue(p);
        key("SCSceneRes.primitivesA.id", p, info.id, topo.faces.size(), false);
        const int mesh = p < res.primALinks1.size() ? res.primALinks1.getValue(p) : -1;
        key("SCSceneRes.primALinks1", p, mesh, meshes, true);
        const bool known = mesh >= 0 && mesh < meshes && scene.meshes.getValue(mesh);
        range("SCSceneRes.primitivesA", p, info, mesh,
              known ? vertexCount(*scene.meshes.getValue(mesh)) : 0, 3);
        // The face's node draws the mesh its triangles are in.
        if (!known || p >= topo.faceRefs2.size()) continue;
        const int node = topo.faceRefs2.getValue(p);
        ++result.references;
        const auto& drawn = node >= 0 && node < topo.nodeLists9.size()
                                ? topo.nodeLists9.getValue(node)
                                : std::vector<int>();
        if (std::find(drawn.begin(), drawn.end(), mesh) == drawn.end())
            problem(at("SCSceneRes.primitivesA", p) + " lies in mesh " + std::to_string(mesh) +
                    ", which its face's node does not draw");
    }
    for (int p = 0; p < res.primitivesB.size(); ++p) {
        const veksg::PrimitiveInfo& info = res.primitivesB.getValue(p);
        key("SCSceneRes.primitivesB.id", p, info.id, topo.edges.size(), false);
        const int line = p < res.primBLinks2.size() ? res.primBLinks2.getValue(p) : -1;
        key("SCSceneRes.primBLinks2", p, line, polylines, true);
        const bool known = line >= 0 && line < polylines && scene.polylines.getValue(line);
        range("SCSceneRes.primitivesB", p, info, line,
              known ? static_cast<int>(scene.polylines.getValue(line)->points.size()) : 0, 1);
    }
}

// A table that the library's `resize` grows by a key space covers that key space.
template <typename Record>
void Checker::keySpaceTables(const std::string& owner, Record& record) {
    veksg::forEachTable(record, [&](const veksg::TableInfo& table, auto& member) {
        using Member = std::remove_const_t<std::remove_reference_t<decltype(member)>>;
        const std::string name = owner + "." + table.name;
        if constexpr (veksg::hasTables<Member>) {
            keySpaceTables(name, member);
        } else if constexpr (isKeyedTable<Member>::value) {
            if (table.keySpace >= 0)
                sideTable(name, member.size(), lastKeyOf(doc, table.keySpace) + 1, false);
        }
    });
}

void Checker::sideTable(const std::string& name, int size, int needed, bool exact) {
    ++result.references;
    if (size < needed || (exact && size != needed))
        problem(name + " has " + std::to_string(size) + " entries for " + std::to_string(needed) +
                " keys");
}

void Checker::sideTables() {
    for (const auto& component : doc.components())
        veksg::visitComponent(*component, [&](auto& concrete) {
            keySpaceTables(veksg::componentName(concrete), concrete);
        });
    auto& scene = *doc.scene;
    auto& res = *doc.resources;
    auto& attributes = *doc.attributes;
    auto space = [this](short code) { return lastKeyOf(doc, code) + 1; };
    // Tables the library sizes after another of the component's own.
    const int primitivesA = res.primitivesA.size();
    sideTable("SCSceneRes.primALinks1", res.primALinks1.size(), primitivesA, false);
    sideTable("SCSceneRes.primALinks2", res.primALinks2.size(), primitivesA, false);
    sideTable("SCSceneRes.primALinks3", res.primALinks3.size(), primitivesA, false);
    sideTable("SCSceneRes.primBLinks2", res.primBLinks2.size(), res.primitivesB.size(), false);
    sideTable("SCAttributes.flags", attributes.flags.size(), attributes.attributes.size(), false);
    // The tool's own conventions: one record per key of the table's key space.
    sideTable("SCScene.meshMaterials", scene.meshMaterials.size(), space(MESHES), true);
    sideTable("SCScene.polylineMaterials", scene.polylineMaterials.size(), space(POLYLINES), true);
    sideTable("SCScene.transforms", scene.transforms.size(), space(NODES), true);
    sideTable("SCScene.boxes", scene.boxes.size(), space(NODES), true);
    sideTable("SCScene.hierarchy", scene.hierarchy.size(), space(NODES), false);
    sideTable("SCSceneRes.orientedBoxes", res.orientedBoxes.size(), space(NODES), true);
    sideTable("SCSceneRes.primitivesA", primitivesA, space(FACES), true);
    sideTable("SCSceneRes.primitivesB", res.primitivesB.size(), space(EDGES), true);
    sideTable("SCAttributes.attributeIndices", attributes.attributeIndices.size(),
              attributes.attributes.size(), true);
}

void Checker::visibility() {
    const auto& sets = doc.runtime->visibility.sets;
    auto space = [this](short code) { return lastKeyOf(doc, code) + 1; };
    const int faces = space(FACES);
    // Without faces the run-time scene sizes set 7 by the meshes instead.
    const int expected[8] = {
        space(NODES),  space(PMI_ITEMS), faces,           space(EDGES),
        space(CURVES), space(VERTICES),  space(SURFACES), faces > 0 ? 0 : space(MESHES)};
    for (std::size_t set = 0; set < sets.size(); ++set) {
        ++result.references;
        if (static_cast<int>(sets[set].size()) != expected[set])
            problem("SCSceneRT.visibility.sets[" + std::to_string(set) + "] has " +
                    std::to_string(sets[set].size()) + " bits for " +
                    std::to_string(expected[set]) + " keys");
    }
}
} // namespace

CheckResult checkDocument(Document& document) {
    return Checker(document).run();
}

} // namespace vekhost
