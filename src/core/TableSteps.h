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

/// Empties each table, in argument order, keeping its capacity.
template <typename... Tables>
void clearTables(Tables&... tables) {
    (tables.clear(), ...);
}

} // namespace detail
} // namespace veksg
