#include "veksg/Hierarchy.h"

#include <algorithm>

#include "core/TableSteps.h"
#include "veksg/Set.h"

namespace veksg {

void Hierarchy::addChild(int parent, int child) {
    resizeToFitKey(parent, {});
    begin()[parent].push_back(child);
}

void Hierarchy::addChild(int parent, const std::vector<int>& children) {
    resizeToFitKey(parent, {});
    std::vector<int>& list = begin()[parent];
    list.insert(list.end(), children.begin(), children.end());
}

void Hierarchy::removeChild(int parent, int child, bool erase) {
    std::vector<int>& list = begin()[parent];
    const auto found = std::find(list.begin(), list.end(), child);
    if (found == list.end()) return;
    const auto kept = std::remove(found, list.end(), child);
    if (erase) list.erase(kept, list.end());
}

void Hierarchy::removeDuplicates() {
    detail::removeRepeatedChildren(begin(), end());
}

void HierarchySet::addChild(int parent, int child) {
    resizeToFitKey(parent, {});
    std::set<int>& children = begin()[parent];
    detail::checkTreeRoom(children);
    children.insert(child);
}

void HierarchySet::addChild(int parent, const std::set<int>& children) {
    resizeToFitKey(parent, {});
    std::set<int>& target = begin()[parent];
    for (int child : children) {
        detail::checkTreeRoom(target);
        target.insert(child);
    }
}

void HierarchySet::removeChild(int parent, int child) {
    begin()[parent].erase(child);
}

} // namespace veksg
