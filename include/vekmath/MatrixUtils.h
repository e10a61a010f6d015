#pragma once

#include "vekmath/Tuple.h"

namespace vekmath {

struct MatrixUtils {
    /// The 4x4 identity: elements 0, 5, 10 and 15 are 1, the rest 0.
    static Tuple<float, 16> createIdentity() {
        Tuple<float, 16> m;
        m[0] = m[5] = m[10] = m[15] = 1.0f;
        return m;
    }
};

} // namespace vekmath
