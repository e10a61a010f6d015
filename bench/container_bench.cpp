// Container operations against the raw std::vector they are built on. Each benchmark has
// its baseline beside it with the same sizes, so results read as ratios.
#include <algorithm>
#include <cstring>
#include <numeric>
#include <vector>

#include <benchmark/benchmark.h>

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

template <typename V>
Container<int, V> filledContainer(int n) {
    Container<int, V> c;
    c.reserve(n);
    for (int i = 0; i < n; ++i)
        c.insert(sample<V>(i));
    return c;
}

template <typename V>
std::vector<V> filledVector(int n) {
    std::vector<V> v;
    v.reserve(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i)
        v.push_back(sample<V>(i));
    return v;
}

template <typename V>
void ContainerRangeFor(benchmark::State& state) {
    auto c = filledContainer<V>(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        long sum = 0;
        for (const V& v : c)
            sum += read(v);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename V>
void ContainerGetValue(benchmark::State& state) {
    auto c = filledContainer<V>(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        long sum = 0;
        for (int k = 0, n = c.size(); k < n; ++k)
            sum += read(c.getValue(k));
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename V>
void VectorIndexLoop(benchmark::State& state) {
    auto v = filledVector<V>(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        long sum = 0;
        for (size_t k = 0, n = v.size(); k < n; ++k)
            sum += read(v[k]);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <bool Reserve>
void ContainerInsert(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Container<int, int> c;
        if (Reserve) c.reserve(n);
        for (int i = 0; i < n; ++i)
            c.insert(i);
        benchmark::DoNotOptimize(c.begin());
    }
    state.SetItemsProcessed(state.iterations() * n);
}

template <bool Reserve>
void VectorPushBack(benchmark::State& state) {
    const auto n = static_cast<size_t>(state.range(0));
    for (auto _ : state) {
        std::vector<int> v;
        if (Reserve) v.reserve(n);
        for (size_t i = 0; i < n; ++i)
            v.push_back(static_cast<int>(i));
        benchmark::DoNotOptimize(v.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ContainerResizeToFitKey(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Container<int, int> c;
        c.resizeToFitKey(n - 1, -1);
        benchmark::DoNotOptimize(c.begin());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0) * 4);
}

void VectorResize(benchmark::State& state) {
    const auto n = static_cast<size_t>(state.range(0));
    for (auto _ : state) {
        std::vector<int> v;
        v.resize(n, -1);
        benchmark::DoNotOptimize(v.data());
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

void ContainerRemoveAt(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    auto c = filledContainer<int>(n);
    for (auto _ : state) {
        c.removeAt(0);
        c.insert(0);
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void VectorErase(benchmark::State& state) {
    auto v = filledVector<int>(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        v.erase(v.begin());
        v.push_back(0);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void ContainerClearRefill(benchmark::State& state) {
    const int n = static_cast<int>(state.range(0));
    auto c = filledContainer<int>(n);
    for (auto _ : state) {
        c.clear();
        for (int i = 0; i < n; ++i)
            c.insert(i);
        benchmark::DoNotOptimize(c.begin());
    }
    state.SetItemsProcessed(state.iterations() * n);
}

void VectorClearRefill(benchmark::State& state) {
    auto v = filledVector<int>(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const size_t n = v.size();
        v.clear();
        for (size_t i = 0; i < n; ++i)
            v.push_back(static_cast<int>(i));
        benchmark::DoNotOptimize(v.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr long small = 1 << 10;
constexpr long large = 1 << 22;

} // namespace

BENCHMARK_TEMPLATE(ContainerRangeFor, int)->Range(small, large);
BENCHMARK_TEMPLATE(ContainerGetValue, int)->Range(small, large);
BENCHMARK_TEMPLATE(VectorIndexLoop, int)->Range(small, large);
BENCHMARK_TEMPLATE(ContainerRangeFor, float)->Range(small, large);
BENCHMARK_TEMPLATE(ContainerGetValue, float)->Range(small, large);
BENCHMARK_TEMPLATE(VectorIndexLoop, float)->Range(small, large);
BENCHMARK_TEMPLATE(ContainerRangeFor, veksg::Node)->Range(small, large);
BENCHMARK_TEMPLATE(ContainerGetValue, veksg::Node)->Range(small, large);
BENCHMARK_TEMPLATE(VectorIndexLoop, veksg::Node)->Range(small, large);
BENCHMARK_TEMPLATE(ContainerInsert, false)->Range(small, large);
BENCHMARK_TEMPLATE(VectorPushBack, false)->Range(small, large);
BENCHMARK_TEMPLATE(ContainerInsert, true)->Range(small, large);
BENCHMARK_TEMPLATE(VectorPushBack, true)->Range(small, large);
BENCHMARK(ContainerResizeToFitKey)->Range(small, large);
BENCHMARK(VectorResize)->Range(small, large);
BENCHMARK(RawFill)->Range(small, large);
BENCHMARK(RawMemset)->Range(small, large);
BENCHMARK(ContainerRemoveAt)->Range(small, 1 << 16);
BENCHMARK(VectorErase)->Range(small, 1 << 16);
BENCHMARK(ContainerClearRefill)->Range(small, large);
BENCHMARK(VectorClearRefill)->Range(small, large);

BENCHMARK_MAIN();
