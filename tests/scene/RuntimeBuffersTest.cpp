#include <type_traits>

#include <gtest/gtest.h>

#include "common/AllocationCounter.h"
#include "common/Checks.h"
#include "veksg/veksg.h"

namespace {

using testing_support::CountAllocations;
using veksg::MeshRT;
using veksg::PolylineRT;
using veksg::TextRT;
using veksg::VertexRT;

// Calls `f` on every table of a batched buffer.
template <typename Buffer, typename F>
void eachTable(Buffer& b, F f) {
    f(b.instances);
    f(b.refs1);
    f(b.refs2);
    f(b.refs3);
    if constexpr (std::is_same_v<Buffer, MeshRT> || std::is_same_v<Buffer, PolylineRT>) f(b.refs4);
    f(b.lists);
    f(b.refs5);
    f(b.flags);
    f(b.refs6);
}

template <typename Buffer>
class BatchedBuffer : public testing::Test {};
using BatchedBuffers = testing::Types<MeshRT, PolylineRT, VertexRT, TextRT>;
TYPED_TEST_SUITE(BatchedBuffer, BatchedBuffers);

// Refilled to the reserved size without one allocation: reserve reached every table and clear
// kept their storage.
TYPED_TEST(BatchedBuffer, ReserveAndClearReachEveryTableAndClearKeepsTheStorage) {
    SKIP_UNLESS_COUNTING_ALLOCATIONS();
    TypeParam buffer;
    eachTable(buffer, [](auto& table) { table.resizeToFitKey(2, {}); });
    if constexpr (!std::is_same_v<TypeParam, VertexRT>) buffer.dirty = true;
    testing_support::expectLengthError([&] { buffer.reserve(-1); }, "vector too long");
    buffer.reserve(16);
    buffer.clear();
    eachTable(buffer, [](auto& table) { EXPECT_EQ(table.size(), 0); });
    if constexpr (!std::is_same_v<TypeParam, VertexRT>) {
        EXPECT_FALSE(buffer.dirty);
    }
    const CountAllocations counting;
    eachTable(buffer, [](auto& table) { table.resizeToFitKey(15, {}); });
    EXPECT_EQ(counting.allocations(), 0u);
}

TEST(VisibilityRT, ClearReleasesEveryChainBeforeEmptyingTheSets) {
    veksg::VisibilityRT visibility;
    std::vector<std::size_t> seen;
    for (auto& functors : visibility.functors)
        functors.push_front(std::shared_ptr<veksg::IPairFunctor>(
            new testing_support::AlwaysTrue(), [&](veksg::IPairFunctor* gone) {
                seen.push_back(visibility.sets[0].size());
                delete gone;
            }));
    for (auto& set : visibility.sets)
        set.assign(100, true);
    visibility.clear();
    EXPECT_EQ(seen, std::vector<std::size_t>(4, 100));
    for (const auto& set : visibility.sets)
        EXPECT_TRUE(set.empty());
}

veksg::SelectionRT selectionOf(std::vector<int> lists) {
    veksg::SelectionRT result;
    for (auto& list : result.selection)
        list = lists;
    return result;
}

TEST(SelectionRT, CopiesAreExactAndAssignmentKeepsTheTargetsStorage) {
    auto target = selectionOf({1, 2, 3, 4, 5, 6});
    target.selection[10].reserve(50);
    const int* storage = target.selection[0].data();
    const auto capacity3 = target.selection[3].capacity();
    const auto capacity10 = target.selection[10].capacity();

    auto source = selectionOf({7, 8});
    source.selection[3] = {};
    source.selection[5] = {4};
    source.selection[10].assign(40, 9);
    EXPECT_EQ(veksg::SelectionRT(source).selection, source.selection);
    target = source;
    EXPECT_EQ(target.selection, source.selection);
    EXPECT_EQ(target.selection[0].data(), storage);
    EXPECT_EQ(target.selection[3].capacity(), capacity3);
    EXPECT_EQ(target.selection[10].capacity(), capacity10);

    // A source longer than the storage reallocates.
    source.selection[0].assign(30, 1);
    target = source;
    EXPECT_EQ(target.selection, source.selection);
}

} // namespace
