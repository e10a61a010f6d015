#include "Visibility.h"

#include <algorithm>

namespace vekhost {

namespace {
bool isSet(const std::vector<bool>& bits, int key) {
    return key >= 0 && static_cast<std::size_t>(key) < bits.size() &&
           bits[static_cast<std::size_t>(key)];
}

int linkOf(const veksg::Container<int, int>& links, int key) {
    return key >= 0 && key < links.size() ? links.getValue(key) : -1;
}
} // namespace

Visibility::Visibility(const Document& document)
    : scene(*document.scene), resources(*document.resources), runtime(*document.runtime) {
    findShownNodes();
}

bool Visibility::nodeShown(int node) const {
    return isSet(shownNodes, node);
}

bool Visibility::faceShown(int face) const {
    return isSet(runtime.visibility.sets[2], face) &&
           nodeShown(linkOf(scene.links6a, linkOf(resources.primALinks1, face)));
}

bool Visibility::meshShown(int mesh) const {
    return isSet(runtime.visibility.sets[7], mesh) && nodeShown(linkOf(scene.links6a, mesh));
}

bool Visibility::edgeShown(int edge) const {
    return isSet(runtime.visibility.sets[3], edge) &&
           nodeShown(linkOf(scene.links7, linkOf(resources.primBLinks2, edge)));
}

bool Visibility::pointsShown(int primitive) const {
    return primitive >= 0 && primitive < resources.primitivesC.size() &&
           nodeShown(resources.primitivesC.getValue(primitive).id);
}

// Down from the roots whose bit is set, into every child whose bit is set too.
void Visibility::findShownNodes() {
    const std::vector<bool>& bits = runtime.visibility.sets[0];
    const int count = std::max(scene.hierarchy.size(), scene.transforms.size());
    std::vector<bool> isChild(static_cast<std::size_t>(count));
    for (int parent = 0; parent < scene.hierarchy.size(); ++parent)
        for (const int child : scene.hierarchy.getValue(parent))
            if (child >= 0 && child < count) isChild[static_cast<std::size_t>(child)] = true;
    shownNodes.assign(static_cast<std::size_t>(count), false);
    std::vector<int> open;
    for (int node = 0; node < count; ++node) {
        if (isChild[static_cast<std::size_t>(node)]) continue;
        rootNodes.push_back(node);
        if (isSet(bits, node)) open.push_back(node);
    }
    for (const int node : open)
        shownNodes[static_cast<std::size_t>(node)] = true;
    while (!open.empty()) {
        const int parent = open.back();
        open.pop_back();
        if (parent >= scene.hierarchy.size()) continue;
        for (const int child : scene.hierarchy.getValue(parent)) {
            if (child < 0 || child >= count || shownNodes[static_cast<std::size_t>(child)] ||
                !isSet(bits, child))
                continue;
            shownNodes[static_cast<std::size_t>(child)] = true;
            open.push_back(child);
        }
    }
}

} // namespace vekhost
