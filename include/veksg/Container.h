#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "vekmath/Tuple.h"
#include "veksg/Export.h"

namespace veksg {

/// Dense keyed table: a value's key is its position, handed out in insertion order from 0.
/// There is no key array, free list or tombstone; size, last key and the next key are all
/// derived from the one array. No member checks a key against the size.
///
/// Members are defined in the class, and so inline, so that a host's loops and growth compile
/// to the same code as on the vector itself; only the keyed store and the move assignment,
/// defined below it, always run the library's exported copies.
template <typename K, typename V>
class Container {
public:
    using iterator = typename std::vector<V>::iterator;
    using const_iterator = typename std::vector<V>::const_iterator;

    Container() = default;
    /// Element-by-element copy; shared pointers are shared, not cloned.
    Container(const Container&) = default;
    Container(Container&&) noexcept = default;
    /// Reuses the existing storage when its capacity suffices.
    Container& operator=(const Container&) = default;
    /// Frees its own storage first, then takes the source's; self-assignment keeps everything.
    Container& operator=(Container&& other) noexcept;
    ~Container() = default;

    /// Appends a copy of `value`; returns its key, the new `size() - 1`.
    int insert(const V& value) {
        values.push_back(value);
        return size() - 1;
    }
    /// `resizeToFitKey(key, fill)`, then overwrites slot `key` with `value`.
    void insert(const int& key, const V& value, const V& fill);

    int size() const { return static_cast<int>(values.size()); }
    const V& getValue(int key) const { return values[static_cast<std::size_t>(key)]; }
    /// Overwrites an existing slot; never grows.
    void setValue(int key, const V& value) { values[static_cast<std::size_t>(key)] = value; }
    /// `size() - 1`, or -1 when empty. Non-const on purpose, unlike `size()`.
    int lastKey() { return size() - 1; }

    /// Makes slot `key` exist, appending copies of `fill`; never shrinks. A key below -1
    /// becomes an enormous count and throws std::length_error("vector too long").
    void resizeToFitKey(int key, V fill) {
        // key + 1 wraps in 32 bits and is then sign-extended, so any key below -1 asks for an
        // impossible count instead of silently doing nothing.
        const int needed = static_cast<int>(static_cast<unsigned>(key) + 1u);
        const auto count = static_cast<std::size_t>(needed);
        if (values.size() >= count) return;
        checkCount(count);
        if (isValueInitialised(fill))
            values.resize(count);
        else
            values.resize(count, fill);
    }
    /// Destroys every value; the capacity is kept.
    void clear() { values.clear(); }
    /// Raises the capacity to exactly `count` when it is larger; a negative count throws
    /// std::length_error("vector too long").
    void reserve(int count) {
        const auto wanted = static_cast<std::size_t>(count);
        if (wanted <= values.capacity()) return;
        checkCount(wanted);
        values.reserve(wanted);
    }
    /// Erases slot `key`; every later key drops by one.
    void removeAt(int key) { values.erase(values.begin() + key); }

    iterator begin() { return values.begin(); }
    iterator end() { return values.end(); }
    const_iterator begin() const { return values.begin(); }
    const_iterator end() const { return values.end(); }

private:
    // The library names the limit itself: the platform's own vector uses other words.
    [[noreturn]] static void throwTooLong() { throw std::length_error("vector too long"); }
    void checkCount(std::size_t count) const {
        if (count > values.max_size()) throwTooLong();
    }
    // Such a fill grows by value initialisation, which is what a copy of it would be: a block
    // clear for a zero number, no copying for an empty list.
    static bool isValueInitialised(const V& fill) {
        if constexpr (std::is_integral_v<V>)
            return fill == V{};
        else if constexpr (std::is_same_v<V, std::vector<int>>)
            return fill.empty();
        else
            return false;
    }

    std::vector<V> values;
};

template <typename K, typename V>
Container<K, V>& Container<K, V>::operator=(Container&& other) noexcept {
    if (this != &other) {
        std::vector<V>().swap(values);
        values.swap(other.values);
    }
    return *this;
}

template <typename K, typename V>
void Container<K, V>::insert(const int& key, const V& value, const V& fill) {
    // `value` may be one of our own slots, which growing would move away.
    const V* first = values.data();
    const std::less<const V*> before;
    const bool own = !values.empty() && !before(&value, first) && before(&value, first + size());
    const std::size_t from = own ? static_cast<std::size_t>(&value - first) : 0;
    resizeToFitKey(key, fill);
    values[static_cast<std::size_t>(key)] = own ? values[from] : value;
}

// Instantiations over standard and math value types; record types declare theirs beside
// the record.
extern template class VEKSG_API Container<int, int>;
extern template class VEKSG_API Container<int, std::vector<int>>;
extern template class VEKSG_API Container<int, std::set<int>>;
extern template class VEKSG_API Container<int, vekmath::Tuple<float, 3>>;
extern template class VEKSG_API Container<int, float>;
extern template class VEKSG_API Container<int, vekmath::Tuple<float, 16>>;
extern template class VEKSG_API Container<int, unsigned char>;
extern template class VEKSG_API Container<int, char>;
extern template class VEKSG_API Container<int, std::wstring>;
extern template class VEKSG_API Container<int, unsigned long>;

} // namespace veksg
