#include <gtest/gtest.h>

#include "vekmath/vekmath.h"

namespace {

using vekmath::Tuple;
using T3 = Tuple<float, 3>;
using Utils = vekmath::TupleUtils<float, 3>;

TEST(Tuple, ConstructorsFillInOrderAndUtilsCompute) {
    EXPECT_EQ((Tuple<float, 4>(0.1f, 0.2f, 0.3f, 0.4f)[3]), 0.4f);
    const float raw[3] = {1.0f, -2.0f, 0.5f};
    T3 t(raw);
    EXPECT_EQ(t, T3(1.0f, -2.0f, 0.5f));
    EXPECT_NE(t, T3());
    EXPECT_EQ(Utils::add(t, T3(1.0f, 1.0f, 1.0f)), T3(2.0f, -1.0f, 1.5f));
    Utils::multiply(t, -2.0f);
    EXPECT_EQ(t, T3(-2.0f, 4.0f, -1.0f));

    const auto m = vekmath::MatrixUtils::createIdentity();
    const Tuple<float, 16> zero;
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(m[i], (i % 5 == 0) ? 1.0f : 0.0f) << i;
        EXPECT_EQ(zero[i], 0.0f) << i;
    }
}

} // namespace
