#include <memory>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "common/AllocationCounter.h"
#include "veksg/veksg.h"

namespace {

using testing_support::CountAllocations;
using veksg::MeshRT;
using veksg::PolylineRT;
using veksg::TextRT;
using veksg::VertexRT;

template <typename Buffer>
constexpr bool hasRefs4 = std::is_same_v<Buffer, MeshRT> || std::is_same_v<Buffer, PolylineRT>;
template <typename Buffer>
constexpr bool hasDirty = !std::is_same_v<Buffer, VertexRT>;

// Calls `f` on every table of a batched buffer, in declaration order.
template <typename Buffer, typename F>
void eachTable(Buffer& buffer, F f) {
    f(buffer.instances);
    f(buffer.refs1);
    f(buffer.refs2);
    f(buffer.refs3);
    if constexpr (hasRefs4<Buffer>) f(buffer.refs4);
    f(buffer.lists);
    f(buffer.refs5);
    f(buffer.flags);
    f(buffer.refs6);
}

// Where each table's values live; unchanged addresses mean no table reallocated.
template <typename Buffer>
std::vector<const void*> storage(Buffer& buffer) {
    std::vector<const void*> addresses;
    eachTable(buffer, [&](auto& table) { addresses.push_back(&*table.begin()); });
    return addresses;
}

template <typename Buffer>
std::vector<int> sizes(Buffer& buffer) {
    std::vector<int> result;
    eachTable(buffer, [&](auto& table) { result.push_back(table.size()); });
    return result;
}

template <typename Buffer>
void grow(Buffer& buffer, int last) {
    eachTable(buffer, [last](auto& table) { table.resizeToFitKey(last, {}); });
}

template <typename Buffer>
void fill(Buffer& buffer, int last) {
    grow(buffer, last);
    buffer.lists.setValue(0, {1, 2, 3});
    if constexpr (hasDirty<Buffer>) buffer.dirty = true;
}

// Growing every table to `last` allocates nothing and leaves each table where it was.
template <typename Buffer>
void expectRoomFor(Buffer& buffer, int last, const std::vector<const void*>& where) {
    const CountAllocations counting;
    grow(buffer, last);
    EXPECT_EQ(counting.allocations(), 0u);
    EXPECT_EQ(storage(buffer), where);
}

template <typename Buffer>
void expectDirty(const Buffer& buffer, bool dirty) {
    if constexpr (hasDirty<Buffer>) {
        EXPECT_EQ(buffer.dirty, dirty);
    }
}

template <typename Buffer>
class BatchedBuffer : public testing::Test {};
using BatchedBuffers = testing::Types<MeshRT, PolylineRT, VertexRT, TextRT>;
TYPED_TEST_SUITE(BatchedBuffer, BatchedBuffers);

TYPED_TEST(BatchedBuffer, ClearEmptiesEveryTableAndKeepsItsStorage) {
    if (!testing_support::CountAllocations::active())
        GTEST_SKIP() << "operator new is replaced by a tool; allocations cannot be counted";
    TypeParam buffer;
    fill(buffer, 9);
    const auto before = storage(buffer);
    {
        const CountAllocations counting;
        buffer.clear();
        // The one list inside `lists` that held anything.
        EXPECT_EQ(counting.deallocations(), 1u);
    }
    for (int size : sizes(buffer))
        EXPECT_EQ(size, 0);
    expectDirty(buffer, false);
    expectRoomFor(buffer, 9, before);
}

TYPED_TEST(BatchedBuffer, ReserveSizesEveryTableAndNeverShrinks) {
    TypeParam buffer;
    fill(buffer, 0);
    buffer.reserve(16);
    const auto reserved = storage(buffer);
    EXPECT_EQ(sizes(buffer), std::vector<int>(reserved.size(), 1));
    EXPECT_EQ(buffer.lists.getValue(0), (std::vector<int>{1, 2, 3}));
    expectDirty(buffer, true);

    buffer.reserve(0);
    buffer.reserve(4);
    expectRoomFor(buffer, 15, reserved);
}

TYPED_TEST(BatchedBuffer, NegativeReserveFailsAndChangesNoTable) {
    TypeParam buffer;
    fill(buffer, 2);
    const auto before = storage(buffer);
    try {
        buffer.reserve(-1);
        FAIL() << "expected std::length_error";
    } catch (const std::length_error& e) {
        EXPECT_STREQ(e.what(), "vector too long");
    }
    EXPECT_EQ(storage(buffer), before);
    EXPECT_EQ(sizes(buffer), std::vector<int>(before.size(), 3));
    EXPECT_EQ(buffer.lists.getValue(0), (std::vector<int>{1, 2, 3}));
}

// Records, when released, how large visibility set 0 still is.
class SizeWitness : public veksg::IPairFunctor {
public:
    SizeWitness(const veksg::VisibilityRT& watched, std::vector<std::size_t>& seen)
        : watched(watched), seen(seen) {}
    ~SizeWitness() override { seen.push_back(watched.sets[0].size()); }
    bool apply(const int& /*key*/) const override { return true; }

private:
    const veksg::VisibilityRT& watched;
    std::vector<std::size_t>& seen;
};

TEST(VisibilityRT, ClearReleasesEveryChainBeforeEmptyingTheSets) {
    veksg::VisibilityRT visibility;
    std::vector<std::size_t> seen;
    for (auto& functors : visibility.functors)
        functors.push_front(std::make_shared<SizeWitness>(visibility, seen));
    for (auto& set : visibility.sets)
        set.assign(100, true);
    const auto capacity = visibility.sets[5].capacity();
    visibility.clear();

    EXPECT_EQ(seen, std::vector<std::size_t>(4, 100));
    for (const auto& functors : visibility.functors)
        EXPECT_TRUE(functors.functors.empty());
    for (const auto& set : visibility.sets)
        EXPECT_TRUE(set.empty());
    EXPECT_EQ(visibility.sets[5].capacity(), capacity);
}

veksg::SelectionRT selectionOf(std::vector<int> lists) {
    veksg::SelectionRT result;
    for (auto& list : result.selection)
        list = lists;
    return result;
}

TEST(SelectionRT, AssignmentCopiesExactlyIntoTheExistingStorage) {
    auto target = selectionOf({1, 2, 3, 4, 5, 6});
    target.selection[10].reserve(50);
    const int* storage = target.selection[0].data();
    const auto capacity3 = target.selection[3].capacity();
    const auto capacity10 = target.selection[10].capacity();

    auto source = selectionOf({7, 8});
    source.selection[3] = {};
    source.selection[10].assign(40, 9);
    target = source;

    EXPECT_EQ(target.selection, source.selection);
    EXPECT_EQ(target.selection[0].data(), storage);
    EXPECT_TRUE(target.selection[3].empty());
    EXPECT_EQ(target.selection[3].capacity(), capacity3);
    EXPECT_EQ(target.selection[10].capacity(), capacity10);

    // A longer source than the storage holds reallocates.
    source.selection[0].assign(30, 1);
    target = source;
    EXPECT_EQ(target.selection, source.selection);

    const auto& same = target;
    target = same;
    EXPECT_EQ(target.selection, source.selection);
}

TEST(SelectionRT, CopyAndMoveConstructionKeepTheLists) {
    auto source = selectionOf({4, 2});
    source.selection[6].clear();
    const veksg::SelectionRT copy(source);
    EXPECT_EQ(copy.selection, source.selection);

    const int* storage = source.selection[0].data();
    const veksg::SelectionRT moved(std::move(source));
    EXPECT_EQ(moved.selection, copy.selection);
    EXPECT_EQ(moved.selection[0].data(), storage);
}

// The list buffers of the runtime scene: emptied, storage kept.
TEST(RuntimeLists, ClearEmptiesAndKeepsCapacity) {
    if (!testing_support::CountAllocations::active())
        GTEST_SKIP() << "operator new is replaced by a tool; allocations cannot be counted";
    auto selection = selectionOf({1, 2, 3});
    veksg::AppearanceRT appearance;
    for (auto& list : appearance.appearance)
        list.assign(5, 0xff00ff00u);
    veksg::TransientMatRT materials;
    for (auto* refs :
         {&materials.refs1, &materials.refs2, &materials.refs3, &materials.refs4, &materials.refs5})
        refs->resizeToFitKey(3, 7);
    materials.count = 4;
    const void* refs4 = &*materials.refs4.begin();
    const auto selectionCapacity = selection.selection[8].capacity();
    const auto appearanceCapacity = appearance.appearance[2].capacity();

    selection.clear();
    appearance.clear();
    materials.clear();

    for (const auto& list : selection.selection)
        EXPECT_TRUE(list.empty());
    for (const auto& list : appearance.appearance)
        EXPECT_TRUE(list.empty());
    EXPECT_EQ(selection.selection[8].capacity(), selectionCapacity);
    EXPECT_EQ(appearance.appearance[2].capacity(), appearanceCapacity);
    for (auto* refs :
         {&materials.refs1, &materials.refs2, &materials.refs3, &materials.refs4, &materials.refs5})
        EXPECT_EQ(refs->size(), 0);
    EXPECT_EQ(materials.count, 0);
    const CountAllocations counting;
    materials.refs4.resizeToFitKey(3, 0);
    EXPECT_EQ(counting.allocations(), 0u);
    EXPECT_EQ(&*materials.refs4.begin(), refs4);
}

} // namespace
