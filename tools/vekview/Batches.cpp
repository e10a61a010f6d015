#include "Batches.h"

#include <algorithm>
#include <vector>

#include "Builder.h"

namespace vekview {

namespace {
using Runs = std::vector<int>;

int linkOf(const veksg::Container<int, int>& links, int key) {
    return key >= 0 && key < links.size() ? links.getValue(key) : -1;
}

// Appends a run, merging it into the last one when they touch.
void addRun(Runs& runs, int first, int count, bool merge) {
    if (count <= 0) return;
    if (merge && !runs.empty() && runs[runs.size() - 2] + runs.back() == first) {
        runs.back() += count;
        return;
    }
    runs.push_back(first);
    runs.push_back(count);
}

// The primitives of each mesh or polyline key, in key order.
std::vector<std::vector<int>> primitivesOf(const veksg::Container<int, int>& links, int keys) {
    std::vector<std::vector<int>> out(static_cast<std::size_t>(std::max(keys, 0)));
    for (int primitive = 0; primitive < links.size(); ++primitive) {
        const int key = links.getValue(primitive);
        if (key >= 0 && key < keys) out[static_cast<std::size_t>(key)].push_back(primitive);
    }
    return out;
}

// One entry, when it has anything to draw.
template <typename Batch>
void addEntry(Batch& batch, const veksg::SCScene& scene, int node, int key, Runs& runs, bool lit) {
    if (runs.empty()) return;
    veksg::Transform placement;
    if (node >= 0 && node < scene.transforms.size() && scene.transforms.getValue(node).valid)
        placement = scene.transforms.getValue(node);
    const int entry = batch.instances.insert({placement.matrix, key});
    batch.refs1.insert(entry, node, -1);
    batch.lists.insert(entry, runs, {});
    batch.flags.insert(entry, lit ? 1 : 0, 0);
    runs.clear();
}
} // namespace

void fillBatches(vekhost::Document& document, const vekhost::Visibility& visibility,
                 const Highlight& highlight) {
    const veksg::SCScene& scene = *document.scene;
    const veksg::SCSceneRes& res = *document.resources;
    veksg::MeshRT& meshes = document.runtime->meshes;
    veksg::PolylineRT& polylines = document.runtime->polylines;
    meshes.clear();
    polylines.clear();

    const auto facesOf = primitivesOf(res.primALinks1, scene.meshes.size());
    Runs plain;
    Runs lit;
    for (int mesh = 0; mesh < scene.meshes.size(); ++mesh) {
        const auto& pointer = scene.meshes.getValue(mesh);
        if (!pointer) continue;
        const int node = linkOf(scene.links6a, mesh);
        const int total = vekhost::vertexCount(*pointer);
        const auto& faces = facesOf[static_cast<std::size_t>(mesh)];
        if (faces.empty()) {
            // A mesh that no face covers shows whole, by its own bit.
            if (visibility.meshShown(mesh))
                addRun(highlight.mesh(mesh) ? lit : plain, 0, total, false);
        }
        for (const int face : faces) {
            if (!visibility.faceShown(face)) continue;
            const veksg::PrimitiveInfo& range = res.primitivesA.getValue(face);
            // Ranges outside the mesh are clipped to it rather than trusted.
            const int first = std::clamp(range.first, 0, total);
            const int count = std::clamp(range.count, 0, total - first) / 3 * 3;
            const bool on = highlight.face(face) || highlight.mesh(mesh);
            addRun(on ? lit : plain, first, count, true);
        }
        addEntry(meshes, scene, node, mesh, plain, false);
        addEntry(meshes, scene, node, mesh, lit, true);
    }

    const auto edgesOf = primitivesOf(res.primBLinks2, scene.polylines.size());
    for (int line = 0; line < scene.polylines.size(); ++line) {
        const auto& pointer = scene.polylines.getValue(line);
        if (!pointer) continue;
        const int node = linkOf(scene.links7, line);
        const int total = static_cast<int>(pointer->points.size());
        for (const int edge : edgesOf[static_cast<std::size_t>(line)]) {
            if (!visibility.edgeShown(edge)) continue;
            const veksg::PrimitiveInfo& range = res.primitivesB.getValue(edge);
            const int first = std::clamp(range.first, 0, total);
            addRun(highlight.edge(edge) ? lit : plain, first,
                   std::clamp(range.count, 0, total - first), false);
        }
        addEntry(polylines, scene, node, line, plain, false);
        addEntry(polylines, scene, node, line, lit, true);
    }
}

} // namespace vekview
