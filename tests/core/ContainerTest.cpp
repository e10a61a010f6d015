#include <climits>
#include <stdexcept>
#include <type_traits>

#include <gtest/gtest.h>

#include "common/Checks.h"
#include "veksg/veksg.h"

using testing_support::valuesOf;
using veksg::Container;

namespace {

template <typename V>
V sample(int i) {
    if constexpr (std::is_same_v<V, std::wstring>)
        return L"value " + std::to_wstring(i);
    else if constexpr (std::is_same_v<V, std::vector<int>>)
        return std::vector<int>(static_cast<std::size_t>(i + 1), i);
    else
        return static_cast<V>(i * 3 + 1);
}

// One rule, many value types: these run through the library's exported instantiations.
template <typename V>
class ContainerOfAnyValue : public ::testing::Test {};
using ValueTypes = ::testing::Types<int, float, unsigned char, std::wstring, std::vector<int>>;
TYPED_TEST_SUITE(ContainerOfAnyValue, ValueTypes);

TYPED_TEST(ContainerOfAnyValue, KeysArePositionsAndGrowthIsExact) {
    const auto v = [](int i) { return sample<TypeParam>(i); };
    Container<int, TypeParam> c;
    EXPECT_EQ(c.lastKey(), -1);
    EXPECT_TRUE(c.begin() == c.end());
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(c.insert(v(i)), i);
    c.removeAt(1);
    EXPECT_EQ(valuesOf(c), (std::vector<TypeParam>{v(0), v(2), v(3)}));
    EXPECT_EQ(c.lastKey(), 2);

    // Growth is exact and never shrinks; storing below the size is a plain overwrite.
    c.resizeToFitKey(-1, v(11));
    c.resizeToFitKey(1, v(11));
    c.insert(5, v(5), v(9));
    c.insert(1, v(7), v(11));
    EXPECT_EQ(valuesOf(c), (std::vector<TypeParam>{v(0), v(7), v(3), v(9), v(9), v(5)}));
}

TEST(Container, ImpossibleCountsThrowVectorTooLongAndChangeNothing) {
    Container<int, std::wstring> c;
    c.insert(L"a");
    // INT_MAX: key + 1 wraps to INT_MIN before it is widened.
    for (int bad : {-2, INT_MIN, INT_MAX})
        testing_support::expectLengthError([&] { c.resizeToFitKey(bad, L""); }, "vector too long");
    for (int bad : {-1, INT_MIN})
        testing_support::expectLengthError([&] { c.reserve(bad); }, "vector too long");
    testing_support::expectLengthError([&] { c.insert(-5, L"b", L""); }, "vector too long");
    EXPECT_EQ(valuesOf(c), std::vector<std::wstring>{L"a"});
}

// Moves and own-value stores are fuzzed against a model; the model never moves onto itself.
TEST(Container, SelfMoveAssignmentKeepsEverything) {
    Container<int, std::wstring> c;
    c.insert(L"a long enough string to live on the heap");
    auto& alias = c;
    c = std::move(alias);
    EXPECT_EQ(valuesOf(c), std::vector<std::wstring>{L"a long enough string to live on the heap"});
}

} // namespace
