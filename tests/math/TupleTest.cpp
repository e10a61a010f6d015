#include <gtest/gtest.h>

#include "vekmath/vekmath.h"

namespace {

using vekmath::Tuple;

TEST(Tuple, DefaultIsZeroAndConstructorsFillInOrder) {
    const Tuple<float, 16> zero;
    for (int i = 0; i < zero.size(); ++i)
        EXPECT_EQ(zero[i], 0.0f);
    const Tuple<float, 3> p(1.0f, 2.0f, 3.0f);
    const Tuple<float, 4> c(0.1f, 0.2f, 0.3f, 0.4f);
    EXPECT_EQ(p[2], 3.0f);
    EXPECT_EQ(c[3], 0.4f);
    const float raw[3] = {4.0f, 5.0f, 6.0f};
    const Tuple<float, 3> fromRaw(raw);
    EXPECT_EQ(fromRaw, (Tuple<float, 3>(4.0f, 5.0f, 6.0f)));
    EXPECT_NE(fromRaw, p);
    EXPECT_EQ(fromRaw.data()[1], 5.0f);
}

TEST(Tuple, UtilsAddAndScale) {
    Tuple<float, 3> t(1.0f, -2.0f, 0.5f);
    const auto sum = vekmath::TupleUtils<float, 3>::add(t, Tuple<float, 3>(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(sum, (Tuple<float, 3>(2.0f, -1.0f, 1.5f)));
    vekmath::TupleUtils<float, 3>::multiply(t, -2.0f);
    EXPECT_EQ(t, (Tuple<float, 3>(-2.0f, 4.0f, -1.0f)));
}

TEST(MatrixUtils, IdentityHasOnesOnTheDiagonalOnly) {
    const auto m = vekmath::MatrixUtils::createIdentity();
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(m[i], (i % 5 == 0) ? 1.0f : 0.0f) << i;
}

} // namespace
