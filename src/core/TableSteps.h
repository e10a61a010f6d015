#pragma once

// Steps that every component repeats over groups of its tables. Internal to the library.

namespace veksg {
namespace detail {

/// Grows each table, in argument order, to hold key `last` with one fill value. An answer
/// at or below -1 grows nothing; smaller answers shrink nothing.
template <typename Fill, typename... Tables>
void growTables(int last, const Fill& fill, Tables&... tables) {
    if (last > -1) (tables.resizeToFitKey(last, fill), ...);
}

/// Like `growTables` with empty child lists, but each hierarchy drops its repeated children
/// straight after its own growth, whether or not it grew. An answer at or below -1 skips
/// both steps, so such an answer leaves every table as it was.
template <typename... Hierarchies>
void growTablesDeduped(int last, Hierarchies&... tables) {
    if (last > -1) ((tables.resizeToFitKey(last, {}), tables.removeDuplicates()), ...);
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
