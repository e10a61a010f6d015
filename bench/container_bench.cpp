// Container operations against the raw std::vector they are built on. Each operation is one
// template run on both tables, so that the two sides of a pair differ in nothing but the
// table's type; results read as ratios.
#include <algorithm>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "BenchMain.h"
#include "veksg/veksg.h"

namespace {

using veksg::Container;

template <typename V>
V sample(int i) {
    return static_cast<V>(i);
}
template <>
veksg::Node sample<veksg::Node>(int i) {
    veksg::Node n;
    n.id = i;
    n.ref = i / 2;
    return n;
}

template <typename V>
int read(const V& v) {
    return static_cast<int>(v);
}
int read(const veksg::Node& n) {
    return n.id + n.ref;
}

// The operations as each table spells them.
template <typename V>
void append(Container<int, V>& table, const V& value) {
    table.insert(value);
}
template <typename V>
void append(std::vector<V>& table, const V& value) {
    table.push_back(value);
}
template <typename V>
const V& valueAt(const Container<int, V>& table, long key) {
    return table.getValue(static_cast<int>(key));
}
template <typename V>
const V& valueAt(const std::vector<V>& table, long key) {
    return table[static_cast<size_t>(key)];
}
template <typename V>
void growTo(Container<int, V>& table, long count, const V& fill) {
    table.resizeToFitKey(static_cast<int>(count - 1), fill);
}
template <typename V>
void growTo(std::vector<V>& table, long count, const V& fill) {
    table.resize(static_cast<size_t>(count), fill);
}
template <typename V>
void removeFirst(Container<int, V>& table) {
    table.removeAt(0);
}
template <typename V>
void removeFirst(std::vector<V>& table) {
    table.erase(table.begin());
}

template <typename Table>
using ValueOf = std::decay_t<decltype(*std::declval<Table&>().begin())>;

template <typename Table>
Table filled(long count) {
    Table table;
    table.reserve(static_cast<int>(count));
    for (int i = 0; i < count; ++i)
        append(table, sample<ValueOf<Table>>(i));
    return table;
}

template <typename Table>
const void* storage(Table& table) {
    return &*table.begin();
}

template <typename Table>
void RangeFor(benchmark::State& state) {
    const auto table = filled<Table>(state.range(0));
    for (auto _ : state) {
        long sum = 0;
        for (const auto& value : table)
            sum += read(value);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// getValue on the container, operator[] on the vector.
template <typename Table>
void KeyedLoop(benchmark::State& state) {
    const auto table = filled<Table>(state.range(0));
    for (auto _ : state) {
        long sum = 0;
        for (long k = 0, n = static_cast<long>(table.size()); k < n; ++k)
            sum += read(valueAt(table, k));
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// insert(v) on the container, push_back on the vector.
template <typename Table, bool Reserve>
void Append(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Table table;
        if (Reserve) table.reserve(n);
        for (int i = 0; i < n; ++i)
            append(table, i);
        benchmark::DoNotOptimize(storage(table));
    }
    state.SetItemsProcessed(state.iterations() * n);
}

// resizeToFitKey(n - 1, -1) on the container, resize(n, -1) on the vector.
template <typename Table>
void Grow(benchmark::State& state) {
    for (auto _ : state) {
        Table table;
        growTo(table, state.range(0), -1);
        benchmark::DoNotOptimize(storage(table));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * 4);
}

// Bandwidth of writing the same bytes into storage that already exists.
void RawFill(benchmark::State& state) {
    std::vector<int> v(static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        std::fill(v.begin(), v.end(), -1);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * 4);
}

void RawMemset(benchmark::State& state) {
    std::vector<int> v(static_cast<size_t>(state.range(0)));
    for (auto _ : state) {
        std::memset(v.data(), 0xff, v.size() * sizeof(int));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * 4);
}

// removeAt(0) on the container, erase(begin()) on the vector; one append keeps the size.
template <typename Table>
void RemoveFirst(benchmark::State& state) {
    auto table = filled<Table>(state.range(0));
    for (auto _ : state) {
        removeFirst(table);
        append(table, 0);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// `clear` keeps the storage, so the refill never reallocates: the counter stays 0.
template <typename Table>
void ClearRefill(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    auto table = filled<Table>(n);
    const void* before = storage(table);
    long reallocations = 0;
    for (auto _ : state) {
        table.clear();
        for (int i = 0; i < n; ++i)
            append(table, i);
        reallocations += storage(table) != before;
        benchmark::DoNotOptimize(storage(table));
    }
    state.SetItemsProcessed(state.iterations() * n);
    state.counters["reallocations"] = static_cast<double>(reallocations);
}

constexpr long small = 1 << 10;
constexpr long large = 1 << 22;

void add(const std::string& name, void (*run)(benchmark::State&), long largest = large) {
    benchmark::RegisterBenchmark(name.c_str(), run)->Range(small, largest);
}

// Each loop beside the same loop over std::vector.
template <typename V>
void addLoops(const std::string& type) {
    add("ContainerRangeFor<" + type + ">", &RangeFor<Container<int, V>>);
    add("VectorRangeFor<" + type + ">", &RangeFor<std::vector<V>>);
    add("ContainerGetValue<" + type + ">", &KeyedLoop<Container<int, V>>);
    add("VectorIndexLoop<" + type + ">", &KeyedLoop<std::vector<V>>);
}

void registerAll() {
    addLoops<int>("int");
    addLoops<float>("float");
    addLoops<veksg::Node>("veksg::Node");
    add("ContainerInsert<false>", &Append<Container<int, int>, false>);
    add("VectorPushBack<false>", &Append<std::vector<int>, false>);
    add("ContainerInsert<true>", &Append<Container<int, int>, true>);
    add("VectorPushBack<true>", &Append<std::vector<int>, true>);
    add("ContainerResizeToFitKey", &Grow<Container<int, int>>);
    add("VectorResize", &Grow<std::vector<int>>);
    add("RawFill", &RawFill);
    add("RawMemset", &RawMemset);
    add("ContainerRemoveAt", &RemoveFirst<Container<int, int>>, 1 << 16);
    add("VectorErase", &RemoveFirst<std::vector<int>>, 1 << 16);
    add("ContainerClearRefill", &ClearRefill<Container<int, int>>);
    add("VectorClearRefill", &ClearRefill<std::vector<int>>);
}

} // namespace

int main(int argc, char** argv) {
    registerAll();
    return veksgbench::runBenchmarks(argc, argv);
}
