#pragma once

// Members of the nine typed values. Internal to the library: only the explicit
// instantiations made from this header exist, so hosts never need these bodies.

#include <cstddef>
#include <utility>

#include "veksg/Values.h"

namespace veksg {
namespace detail {

/// A new buffer holding a copy of the zero-terminated `source`, released with `releaseKey`.
/// The only place that allocates key buffers, so that the leak checkers can name it.
wchar_t* copyKey(const wchar_t* source);
void releaseKey(wchar_t* key) noexcept;

} // namespace detail

template <typename T, int N>
Value<T, N>::Value(const wchar_t* key, T value) : key_(nullptr), value_(std::move(value)) {
    // After the value so that a failed key copy leaves only the value to destroy.
    key_ = detail::copyKey(key);
}

template <typename T, int N>
Value<T, N>::Value(const Value& other) : IValue(other), key_(nullptr), value_(other.value_) {
    key_ = detail::copyKey(other.key_);
}

// There is no self-assignment check: assigning a value to itself gives it a fresh key copy.
template <typename T, int N>
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment)
Value<T, N>& Value<T, N>::operator=(const Value& other) {
    // The previous buffer stays allocated: that is the type's defined behaviour, kept
    // as it is (tests/lsan.supp and scripts/memcheck.supp name this one leak).
    key_ = detail::copyKey(other.key_);
    value_ = other.value_;
    return *this;
}

template <typename T, int N>
Value<T, N>::~Value() {
    detail::releaseKey(key_);
    key_ = nullptr;
}

template <typename T, int N>
IValue::ValueType Value<T, N>::type() const {
    return static_cast<ValueType>(N);
}

template <typename T, int N>
const wchar_t* Value<T, N>::key() const {
    return key_;
}

} // namespace veksg
