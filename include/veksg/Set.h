#pragma once

#include <set>
#include <stdexcept>

#include "veksg/Export.h"

namespace veksg {

namespace detail {
// The standard tree reports no length error of its own; the library names the limit itself.
template <typename Tree>
void checkTreeRoom(const Tree& tree) {
    if (tree.size() >= tree.max_size()) throw std::length_error("map/set too long");
}
} // namespace detail

/// An ordered set of keys, ascending, without duplicates.
template <typename T>
class Set {
public:
    using const_iterator = typename std::set<T>::const_iterator;

    Set() = default;
    Set(const Set&) = default;
    Set(Set&&) noexcept = default;
    Set& operator=(const Set&) = default;
    /// Empties the target first, then exchanges contents: the source ends up empty.
    Set& operator=(Set&& other) noexcept {
        elements.clear();
        elements.swap(other.elements);
        return *this;
    }
    ~Set() = default;

    /// Adds `key`; no effect if it is already present.
    void insert(const T& key) {
        detail::checkTreeRoom(elements);
        elements.insert(key);
    }
    int size() const { return static_cast<int>(elements.size()); }
    bool empty() const { return elements.empty(); }
    void clear() { elements.clear(); }

    /// Iteration is read-only, in ascending order.
    const_iterator begin() { return elements.cbegin(); }
    const_iterator begin() const { return elements.cbegin(); }
    const_iterator end() { return elements.cend(); }
    const_iterator end() const { return elements.cend(); }

private:
    std::set<T> elements;
};

extern template class VEKSG_API Set<int>;

} // namespace veksg
