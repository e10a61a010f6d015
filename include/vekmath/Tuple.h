#pragma once

namespace vekmath {

/// A fixed array of N values with value semantics: points and vectors (N = 3),
/// RGBA colours (N = 4) and 4x4 matrices (N = 16).
template <typename T, int N>
class Tuple {
public:
    static_assert(N > 0, "a tuple holds at least one value");

    /// Every element zero.
    Tuple() = default;
    Tuple(T x, T y, T z) : values{x, y, z} { static_assert(N == 3, "three values need N == 3"); }
    Tuple(T x, T y, T z, T w) : values{x, y, z, w} {
        static_assert(N == 4, "four values need N == 4");
    }
    /// Copies N values from `source`.
    explicit Tuple(const T* source) {
        for (int i = 0; i < N; ++i)
            values[i] = source[i];
    }
    Tuple(const Tuple&) = default;
    Tuple& operator=(const Tuple&) = default;

    T& operator[](int i) { return values[i]; }
    const T& operator[](int i) const { return values[i]; }
    T* data() { return values; }
    const T* data() const { return values; }
    static constexpr int size() { return N; }

    /// Element-wise, exact comparison.
    bool operator==(const Tuple& other) const {
        for (int i = 0; i < N; ++i)
            if (!(values[i] == other.values[i])) return false;
        return true;
    }
    bool operator!=(const Tuple& other) const { return !(*this == other); }

private:
    T values[N] = {};
};

} // namespace vekmath
