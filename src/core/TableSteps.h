#pragma once

// Steps that every component repeats over groups of its tables. Internal to the library.

#include <algorithm>
#include <cstddef>

namespace veksg {
namespace detail {

/// Grows each table, in argument order, to hold key `last` with one fill value. An answer
/// at or below -1 grows nothing; smaller answers shrink nothing.
template <typename Fill, typename... Tables>
void growTables(int last, const Fill& fill, Tables&... tables) {
    if (last > -1) (tables.resizeToFitKey(last, fill), ...);
}

/// True when every child is greater than the one before it. Reads the whole list without an
/// early exit, so that the compiler can compare several children per instruction.
template <typename List>
bool strictlyAscending(const List& list) {
    const auto* children = list.data();
    const std::size_t count = list.size();
    unsigned descents = 0;
    for (std::size_t i = 1; i < count; ++i)
        descents |= children[i - 1] >= children[i];
    return descents == 0;
}

/// Sorts one list ascending and drops repeated children. Short lists, the usual case in a
/// model's topology, sort by insertion, which costs no call per child.
template <typename List>
void sortUnique(List& list) {
    constexpr std::ptrdiff_t shortList = 32;
    const auto first = list.begin();
    const auto last = list.end();
    if (last - first > shortList) {
        std::sort(first, last);
    } else {
        for (auto next = first; next != last; ++next) {
            const auto child = *next;
            auto hole = next;
            for (; hole != first && child < *(hole - 1); --hole)
                *hole = *(hole - 1);
            *hole = child;
        }
    }
    list.erase(std::unique(first, last), last);
}

/// Sorts each list of [first, last) ascending and drops repeated children. After the first
/// pass most lists are already strictly ascending: one read decides, and they stay as they
/// are.
template <typename ListIterator>
void removeRepeatedChildren(ListIterator first, ListIterator last) {
    for (; first != last; ++first)
        if (!strictlyAscending(*first)) sortUnique(*first);
}

/// Like `growTables` with empty child lists, but each hierarchy drops its repeated children
/// straight after its own growth, whether or not it grew. An answer at or below -1 skips
/// both steps, so such an answer leaves every table as it was.
template <typename... Hierarchies>
void growTablesDeduped(int last, Hierarchies&... tables) {
    // The lists that growth appends are empty, so only the ones held before need the pass;
    // the result is that of `removeDuplicates` without reading the new slots back.
    const auto growDeduped = [last](auto& table) {
        const int held = table.size();
        table.resizeToFitKey(last, {});
        removeRepeatedChildren(table.begin(), table.begin() + held);
    };
    if (last > -1) (growDeduped(tables), ...);
}

/// Empties each table, in argument order, keeping its capacity.
template <typename... Tables>
void clearTables(Tables&... tables) {
    (tables.clear(), ...);
}

/// Raises each table's capacity, in argument order, to `count` where it is lower. A negative
/// count fails at the first table, before any table has changed.
template <typename... Tables>
void reserveTables(int count, Tables&... tables) {
    (tables.reserve(count), ...);
}

/// Releases every shared entry of `table` front to back, first handing each live payload to
/// `emptyPayload` so that other holders see it emptied, then removes all entries.
template <typename Table, typename EmptyPayload>
void releaseShared(Table& table, EmptyPayload emptyPayload) {
    for (auto& held : table) {
        if (held) emptyPayload(*held);
        held.reset();
    }
    table.clear();
}

/// Releases every entry of each table, front to back and in argument order, then removes the
/// entries. The pointees are left as they are for any other holder.
template <typename... Tables>
void releaseTables(Tables&... tables) {
    const auto releaseAll = [](auto& table) {
        for (auto& held : table)
            held.reset();
        table.clear();
    };
    (releaseAll(tables), ...);
}

} // namespace detail
} // namespace veksg
