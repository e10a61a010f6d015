#pragma once

#include "vekmath/Tuple.h"

namespace vekmath {

template <typename T, int N>
struct TupleUtils {
    /// a + b, element-wise.
    static Tuple<T, N> add(const Tuple<T, N>& a, const Tuple<T, N>& b) {
        Tuple<T, N> sum;
        for (int i = 0; i < N; ++i)
            sum[i] = a[i] + b[i];
        return sum;
    }
    /// t *= s, in place.
    static void multiply(Tuple<T, N>& t, T s) {
        for (int i = 0; i < N; ++i)
            t[i] *= s;
    }
};

} // namespace vekmath
