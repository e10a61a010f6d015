#include "Selection.h"

#include <algorithm>

namespace vekview {

namespace {
int linkOf(const veksg::Container<int, int>& links, int key) {
    return key >= 0 && key < links.size() ? links.getValue(key) : -1;
}

const std::vector<int>& listOf(const veksg::Hierarchy& lists, int key) {
    static const std::vector<int> none;
    return key >= 0 && key < lists.size() ? lists.getValue(key) : none;
}

void mark(std::vector<bool>& bits, int key) {
    if (key >= 0 && static_cast<std::size_t>(key) < bits.size())
        bits[static_cast<std::size_t>(key)] = true;
}
} // namespace

int nodeOfFace(const vekhost::Document& document, int face) {
    return linkOf(document.topo->faceRefs2, face);
}

int nodeOfEdge(const vekhost::Document& document, int edge) {
    return edge >= 0 && edge < document.topo->edges.size() ? document.topo->edges.getValue(edge).ref
                                                           : -1;
}

int nodeOfMesh(const vekhost::Document& document, int mesh) {
    return linkOf(document.scene->links6a, mesh);
}

void Selection::clear() {
    doc.runtime->selection.clear();
}

void Selection::select(int keySpace, int key, bool add) {
    auto& lists = doc.runtime->selection.selection;
    if (!add) {
        for (auto& list : lists)
            list.clear();
    }
    if (keySpace < meshKeys || selectionList(keySpace) >= lists.size() || key < 0) return;
    auto& list = lists[selectionList(keySpace)];
    const auto found = std::find(list.begin(), list.end(), key);
    if (found == list.end())
        list.push_back(key);
    else if (add)
        list.erase(found);
}

void Selection::selectAnnotation(int annotation) {
    clear();
    const veksg::SCPmi& pmi = *doc.pmi;
    if (annotation < 0 || annotation >= pmi.pmis.size() || !pmi.pmis.getValue(annotation)) return;
    add(annotationKeys, {annotation});
    // A face on both sides of a dimension is selected once.
    add(faceKeys, listOf(pmi.relation4, annotation));
    add(faceKeys, listOf(pmi.relation6, annotation));
    add(edgeKeys, listOf(pmi.relation11, annotation));
}

void Selection::add(int keySpace, const std::vector<int>& keys) {
    auto& list = doc.runtime->selection.selection[selectionList(keySpace)];
    for (const int key : keys)
        if (std::find(list.begin(), list.end(), key) == list.end()) list.push_back(key);
}

const std::vector<int>& Selection::keys(int keySpace) const {
    return doc.runtime->selection.selection[selectionList(keySpace)];
}

bool Selection::empty() const {
    const auto& lists = doc.runtime->selection.selection;
    return std::all_of(lists.begin(), lists.end(), [](const auto& list) { return list.empty(); });
}

int Selection::focusNode() const {
    if (!keys(nodeKeys).empty()) return keys(nodeKeys).front();
    if (!keys(faceKeys).empty()) return nodeOfFace(doc, keys(faceKeys).front());
    if (!keys(edgeKeys).empty()) return nodeOfEdge(doc, keys(edgeKeys).front());
    if (!keys(meshKeys).empty()) return nodeOfMesh(doc, keys(meshKeys).front());
    return -1;
}

Highlight Selection::highlight() const {
    const veksg::SCSceneTopo& topo = *doc.topo;
    Highlight lit;
    lit.faces.assign(static_cast<std::size_t>(topo.faces.size()), false);
    lit.edges.assign(static_cast<std::size_t>(topo.edges.size()), false);
    lit.meshes.assign(static_cast<std::size_t>(doc.scene->meshes.size()), false);
    for (const int face : keys(faceKeys)) {
        mark(lit.faces, face);
        for (const int edge : listOf(topo.faceLists2, face))
            mark(lit.edges, edge);
    }
    for (const int edge : keys(edgeKeys))
        mark(lit.edges, edge);
    for (const int mesh : keys(meshKeys))
        mark(lit.meshes, mesh);
    // Every node below a selected one lights up with it; `seen` stops a cyclic hierarchy.
    std::vector<bool> seen(static_cast<std::size_t>(topo.nodes.size()));
    std::vector<int> open(keys(nodeKeys));
    while (!open.empty()) {
        const int node = open.back();
        open.pop_back();
        if (node < 0 || node >= topo.nodes.size() || seen[static_cast<std::size_t>(node)]) continue;
        seen[static_cast<std::size_t>(node)] = true;
        for (const int face : listOf(topo.nodeLists4, node))
            mark(lit.faces, face);
        for (const int edge : listOf(topo.nodeLists5, node))
            mark(lit.edges, edge);
        for (const int mesh : listOf(topo.nodeLists9, node))
            mark(lit.meshes, mesh);
        const auto& children = listOf(topo.nodeLists3, node);
        open.insert(open.end(), children.begin(), children.end());
    }
    return lit;
}

} // namespace vekview
