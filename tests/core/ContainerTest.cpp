#include <climits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/ThrowingValue.h"
#include "veksg/veksg.h"

using veksg::Container;

namespace {

template <typename V>
std::vector<V> contents(const Container<int, V>& c) {
    return std::vector<V>(c.begin(), c.end());
}

template <typename F>
void expectVectorTooLong(F&& f) {
    try {
        f();
        FAIL() << "expected std::length_error";
    } catch (const std::length_error& e) {
        EXPECT_STREQ(e.what(), "vector too long");
    }
}

// One rule, many value types: these run through the library's exported instantiations.
template <typename V>
struct Sample;
template <>
struct Sample<int> {
    static int make(int i) { return i * 3 + 1; }
};
template <>
struct Sample<float> {
    static float make(int i) { return 0.5f * static_cast<float>(i) + 1.0f; }
};
template <>
struct Sample<unsigned char> {
    static unsigned char make(int i) { return static_cast<unsigned char>(i + 1); }
};
template <>
struct Sample<std::wstring> {
    static std::wstring make(int i) { return L"value " + std::to_wstring(i); }
};
template <>
struct Sample<std::vector<int>> {
    static std::vector<int> make(int i) { return std::vector<int>(static_cast<size_t>(i + 1), i); }
};
template <>
struct Sample<veksg::Node> {
    static veksg::Node make(int i) {
        veksg::Node n;
        n.id = i;
        n.setName(std::to_wstring(i).c_str());
        return n;
    }
};

bool same(const veksg::Node& a, const veksg::Node& b) {
    return a.id == b.id && std::wstring(a.name()) == b.name();
}
template <typename V>
bool same(const V& a, const V& b) {
    return a == b;
}

template <typename V>
class ContainerOfAnyValue : public ::testing::Test {};
using ValueTypes =
    ::testing::Types<int, float, unsigned char, std::wstring, std::vector<int>, veksg::Node>;
TYPED_TEST_SUITE(ContainerOfAnyValue, ValueTypes);

TYPED_TEST(ContainerOfAnyValue, KeysAreInsertionPositions) {
    Container<int, TypeParam> c;
    EXPECT_EQ(c.size(), 0);
    EXPECT_EQ(c.lastKey(), -1);
    EXPECT_TRUE(c.begin() == c.end());
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(c.insert(Sample<TypeParam>::make(i)), i);
    EXPECT_EQ(c.size(), 5);
    EXPECT_EQ(c.lastKey(), 4);
    for (int i = 0; i < 5; ++i)
        EXPECT_TRUE(same(c.getValue(i), Sample<TypeParam>::make(i)));
}

TYPED_TEST(ContainerOfAnyValue, StoreAtKeyFillsTheGapOnly) {
    const TypeParam value = Sample<TypeParam>::make(7);
    const TypeParam fill = Sample<TypeParam>::make(9);
    Container<int, TypeParam> c;
    c.insert(7, value, fill);
    ASSERT_EQ(c.size(), 8);
    for (int k = 0; k < 7; ++k)
        EXPECT_TRUE(same(c.getValue(k), fill)) << k;
    EXPECT_TRUE(same(c.getValue(7), value));

    // Below the size it is a plain overwrite: no growth, the fill written nowhere.
    c.insert(2, value, Sample<TypeParam>::make(11));
    EXPECT_EQ(c.size(), 8);
    EXPECT_TRUE(same(c.getValue(2), value));
    EXPECT_TRUE(same(c.getValue(3), fill));
}

TYPED_TEST(ContainerOfAnyValue, RemoveAtShiftsLaterKeysDown) {
    Container<int, TypeParam> c;
    for (int i = 0; i < 4; ++i)
        c.insert(Sample<TypeParam>::make(i));
    c.removeAt(1);
    ASSERT_EQ(c.size(), 3);
    EXPECT_EQ(c.lastKey(), 2);
    EXPECT_TRUE(same(c.getValue(0), Sample<TypeParam>::make(0)));
    EXPECT_TRUE(same(c.getValue(1), Sample<TypeParam>::make(2)));
    EXPECT_TRUE(same(c.getValue(2), Sample<TypeParam>::make(3)));
}

TEST(Container, ResizeToFitKeyGrowsExactlyAndNeverShrinks) {
    Container<int, int> c;
    c.resizeToFitKey(-1, 5);
    EXPECT_EQ(c.size(), 0);
    c.resizeToFitKey(2, 5);
    EXPECT_EQ(contents(c), (std::vector<int>{5, 5, 5}));
    c.setValue(1, 8);
    c.resizeToFitKey(1, 0);
    c.resizeToFitKey(-1, 0);
    EXPECT_EQ(contents(c), (std::vector<int>{5, 8, 5}));
    c.resizeToFitKey(4, 0);
    EXPECT_EQ(contents(c), (std::vector<int>{5, 8, 5, 0, 0}));
}

TEST(Container, ImpossibleCountsThrowVectorTooLongAndChangeNothing) {
    Container<int, int> c;
    c.insert(1);
    expectVectorTooLong([&] { c.reserve(-1); });
    expectVectorTooLong([&] { c.reserve(INT_MIN); });
    expectVectorTooLong([&] { c.resizeToFitKey(-2, 0); });
    expectVectorTooLong([&] { c.resizeToFitKey(INT_MIN, 0); });
    // key + 1 wraps to INT_MIN before it is widened.
    expectVectorTooLong([&] { c.resizeToFitKey(INT_MAX, 0); });
    expectVectorTooLong([&] { c.insert(-5, 2, 0); });
    EXPECT_EQ(contents(c), (std::vector<int>{1}));

    Container<int, std::wstring> strings;
    expectVectorTooLong([&] { strings.reserve(-3); });
    expectVectorTooLong([&] { strings.insert(-2, L"a", L""); });
    EXPECT_EQ(strings.size(), 0);
}

TEST(Container, FailedGrowthKeepsTheOldContents) {
    using testing_support::ThrowingValue;
    {
        Container<int, ThrowingValue> c;
        c.reserve(16);
        for (int i = 0; i < 3; ++i)
            c.insert(ThrowingValue(i));
        const int aliveBefore = ThrowingValue::alive;

        ThrowingValue::copiesLeft = 4; // growth in place: a few slots, then a failing copy
        EXPECT_THROW(c.resizeToFitKey(9, ThrowingValue(-1)), std::runtime_error);
        ThrowingValue::copiesLeft = -1;
        EXPECT_EQ(c.size(), 3);
        EXPECT_EQ(ThrowingValue::alive, aliveBefore);

        ThrowingValue::copiesLeft = 2; // growth by reallocation fails part way
        EXPECT_THROW(c.insert(40, ThrowingValue(1), ThrowingValue(-1)), std::runtime_error);
        ThrowingValue::copiesLeft = -1;
        ASSERT_EQ(c.size(), 3);
        EXPECT_EQ(c.getValue(2).payload, 2);
        EXPECT_EQ(ThrowingValue::alive, aliveBefore);
    }
    EXPECT_EQ(ThrowingValue::alive, 0);
}

TEST(Container, CapacitySurvivesClearAndRemoval) {
    Container<int, int> c;
    for (int i = 0; i < 100; ++i)
        c.insert(i);
    const int* storage = &*c.begin();
    c.removeAt(0);
    c.clear();
    EXPECT_EQ(c.size(), 0);
    for (int i = 0; i < 100; ++i)
        c.insert(i);
    EXPECT_EQ(&*c.begin(), storage);
}

TEST(Container, ReserveIsExactAndNeverShrinks) {
    Container<int, int> c;
    c.reserve(0);
    EXPECT_EQ(c.size(), 0);
    c.reserve(64);
    c.insert(0);
    const int* storage = &*c.begin();
    c.reserve(10);
    for (int i = 1; i < 64; ++i)
        c.insert(i);
    EXPECT_EQ(&*c.begin(), storage);
    EXPECT_EQ(c.size(), 64);
}

TEST(Container, SharedPayloadsAreSharedByCopies) {
    auto mesh = std::make_shared<veksg::Mesh>();
    Container<int, std::shared_ptr<veksg::Mesh>> c;
    c.insert(mesh);
    c.insert(2, mesh, nullptr);
    EXPECT_EQ(mesh.use_count(), 3);
    EXPECT_EQ(c.getValue(1), nullptr);
    {
        Container<int, std::shared_ptr<veksg::Mesh>> copy(c);
        EXPECT_EQ(mesh.use_count(), 5);
        EXPECT_EQ(copy.getValue(0).get(), mesh.get());
    }
    EXPECT_EQ(mesh.use_count(), 3);
    // A shared fill hands back its temporary reference.
    c.resizeToFitKey(5, mesh);
    EXPECT_EQ(mesh.use_count(), 6);
    c.clear();
    EXPECT_EQ(mesh.use_count(), 1);
}

TEST(Container, MoveLeavesTheSourceEmptyAndUsable) {
    Container<int, std::wstring> source;
    source.insert(L"a");
    source.insert(L"b");
    Container<int, std::wstring> target(std::move(source));
    EXPECT_EQ(source.size(), 0); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(target.size(), 2);
    EXPECT_EQ(source.insert(L"c"), 0);

    auto held = std::make_shared<veksg::Polyline>();
    Container<int, std::shared_ptr<veksg::Polyline>> first;
    Container<int, std::shared_ptr<veksg::Polyline>> second;
    first.insert(held);
    second.insert(nullptr);
    first = std::move(second); // the old values go first
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(first.size(), 1);
    EXPECT_EQ(second.size(), 0); // NOLINT(bugprone-use-after-move)
}

TEST(Container, SelfAssignmentChangesNothing) {
    Container<int, std::wstring> c;
    c.insert(L"kept");
    auto& alias = c;
    c = alias;
    c = std::move(alias);
    ASSERT_EQ(c.size(), 1);
    EXPECT_EQ(c.getValue(0), L"kept");
}

TEST(Container, CopyAssignmentReusesStorageThatFits) {
    Container<int, int> target;
    target.reserve(32);
    target.insert(9);
    const int* storage = &*target.begin();
    Container<int, int> source;
    for (int i = 0; i < 20; ++i)
        source.insert(i);
    target = source;
    EXPECT_EQ(&*target.begin(), storage);
    EXPECT_EQ(contents(target), contents(source));
}

TEST(Container, StoringOneOfItsOwnValuesSurvivesGrowth) {
    Container<int, std::wstring> c;
    c.insert(L"a long enough string to live on the heap");
    c.insert(5000, c.getValue(0), L"");
    EXPECT_EQ(c.getValue(5000), c.getValue(0));
    EXPECT_EQ(c.getValue(1), L"");
}

} // namespace
