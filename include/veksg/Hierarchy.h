#pragma once

#include <set>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"

namespace veksg {

/// Parent-to-children lists: slot `p` holds the child keys of parent `p` in the order added.
class VEKSG_API Hierarchy : public Container<int, std::vector<int>> {
public:
    /// Grows to `parent` if needed, then appends `child`. No duplicate check.
    void addChild(int parent, int child);
    /// Grows to `parent` if needed, then appends every child in order. No duplicate check.
    void addChild(int parent, const std::vector<int>& children);
    /// Removes every occurrence of `child` from an existing parent. With `erase` false the
    /// list keeps its length and its last positions keep leftover values.
    void removeChild(int parent, int child, bool erase);
    /// Sorts every list ascending and drops repeated children.
    void removeDuplicates();
};

/// Parent-to-children sets: slot `p` holds the ordered, duplicate-free children of `p`.
class VEKSG_API HierarchySet : public Container<int, std::set<int>> {
public:
    void addChild(int parent, int child);
    void addChild(int parent, const std::set<int>& children);
    /// `parent` must already exist; the container never grows here.
    void removeChild(int parent, int child);
};

} // namespace veksg
