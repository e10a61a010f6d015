// Document scale: a synthetic CAD document of N parts (one node, 10 faces, 30 edges and 20
// vertices each, child lists with some repeats) in SCSceneTopo, against the same lists in
// raw vectors.
#include <algorithm>
#include <memory>
#include <vector>

#include <benchmark/benchmark.h>

#include "veksg/veksg.h"

namespace {

constexpr int facesPerPart = 10;
constexpr int edgesPerPart = 30;
constexpr int verticesPerPart = 20;

using RawLists = std::vector<std::vector<int>>;

struct RawDocument {
    RawLists nodeFaces; // node -> faces, with a repeat now and then
    RawLists nodeEdges; // node -> edges, edges shared by faces appear twice
    RawLists faceEdges; // face -> edges
    RawLists edgeVerts; // edge -> vertices
    int lastNode = -1;
    int lastFace = -1;
    int lastEdge = -1;
};

RawDocument makeDocument(int parts) {
    RawDocument doc;
    for (int p = 0; p < parts; ++p) {
        const int face0 = p * facesPerPart;
        const int edge0 = p * edgesPerPart;
        const int vert0 = p * verticesPerPart;
        std::vector<int> faces;
        std::vector<int> edges;
        for (int f = 0; f < facesPerPart; ++f) {
            faces.push_back(face0 + (f * 7) % facesPerPart);
            std::vector<int> around;
            for (int e = 0; e < 4; ++e) {
                const int edge = edge0 + (f * 3 + e) % edgesPerPart;
                around.push_back(edge);
                edges.push_back(edge);
            }
            doc.faceEdges.push_back(around);
        }
        if (p % 3 == 0) faces.push_back(face0);
        for (int e = 0; e < edgesPerPart; ++e)
            doc.edgeVerts.push_back(
                {vert0 + (e + 1) % verticesPerPart, vert0 + e % verticesPerPart});
        doc.nodeFaces.push_back(faces);
        doc.nodeEdges.push_back(edges);
    }
    doc.lastNode = parts - 1;
    doc.lastFace = parts * facesPerPart - 1;
    doc.lastEdge = parts * edgesPerPart - 1;
    return doc;
}

class DocumentResizer : public veksg::SchemaResizer {
public:
    explicit DocumentResizer(const RawDocument& doc) : doc(doc) {}
    int lastKeyOf(const short& keySpace) override {
        switch (keySpace) {
        case 10:
            return doc.lastNode;
        case 11:
            return doc.lastFace;
        case 12:
            return doc.lastEdge;
        default:
            return -1;
        }
    }

private:
    const RawDocument& doc;
};

void fill(veksg::Hierarchy& h, const RawLists& lists) {
    h.reserve(static_cast<int>(lists.size()));
    for (const auto& list : lists)
        h.insert(list);
}

std::unique_ptr<veksg::SCSceneTopo> makeTopology(const RawDocument& doc) {
    auto topo = std::make_unique<veksg::SCSceneTopo>();
    fill(topo->nodeLists3, doc.nodeFaces);
    fill(topo->nodeLists4, doc.nodeEdges);
    fill(topo->faceLists2, doc.faceEdges);
    fill(topo->edgeLists2, doc.edgeVerts);
    return topo;
}

// What a hand-written model would do: grow every per-key table of the three key spaces and
// sort and unique the lists that need it.
void rawResize(RawDocument& doc, std::vector<std::vector<int>>& refs,
               std::vector<RawLists>& lists) {
    const int lasts[] = {doc.lastNode, doc.lastFace, doc.lastEdge};
    for (size_t i = 0; i < refs.size(); ++i)
        refs[i].resize(static_cast<size_t>(lasts[i % 3] + 1), -1);
    for (auto* sorted : {&doc.nodeFaces, &doc.nodeEdges, &doc.faceEdges, &doc.edgeVerts})
        for (auto& list : *sorted) {
            std::sort(list.begin(), list.end());
            list.erase(std::unique(list.begin(), list.end()), list.end());
        }
    for (size_t i = 0; i < lists.size(); ++i)
        lists[i].resize(static_cast<size_t>(lasts[i % 3] + 1));
}

long entities(int parts) {
    return static_cast<long>(parts) * (1 + facesPerPart + edgesPerPart);
}

void TopoFirstResize(benchmark::State& state) {
    const auto doc = makeDocument(static_cast<int>(state.range(0)));
    const auto resizer = std::make_shared<DocumentResizer>(doc);
    for (auto _ : state) {
        state.PauseTiming();
        auto topo = makeTopology(doc);
        state.ResumeTiming();
        topo->resize(resizer);
        benchmark::DoNotOptimize(topo->nodeFlags.begin());
        state.PauseTiming();
        topo.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * entities(static_cast<int>(state.range(0))));
}

void RawFirstResize(benchmark::State& state) {
    const auto source = makeDocument(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        auto doc = source;
        std::vector<std::vector<int>> refs(14);
        std::vector<RawLists> lists(19);
        state.ResumeTiming();
        rawResize(doc, refs, lists);
        benchmark::DoNotOptimize(refs.data());
        state.PauseTiming();
        doc = RawDocument();
        lists.clear();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * entities(static_cast<int>(state.range(0))));
}

void TopoSecondResize(benchmark::State& state) {
    const auto doc = makeDocument(static_cast<int>(state.range(0)));
    const auto resizer = std::make_shared<DocumentResizer>(doc);
    auto topo = makeTopology(doc);
    topo->resize(resizer);
    for (auto _ : state) {
        topo->resize(resizer);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * entities(static_cast<int>(state.range(0))));
}

// One plain read of every list that the second resize has to look at.
void RawReadPass(benchmark::State& state) {
    const auto doc = makeDocument(static_cast<int>(state.range(0)));
    const auto topo = makeTopology(doc);
    topo->resize(std::make_shared<DocumentResizer>(doc));
    const veksg::Hierarchy* all[] = {&topo->nodeLists3, &topo->nodeLists4,  &topo->nodeLists5,
                                     &topo->nodeLists6, &topo->nodeLists7,  &topo->nodeLists8,
                                     &topo->nodeLists9, &topo->nodeLists10, &topo->nodeLists11,
                                     &topo->faceLists2, &topo->faceLists3,  &topo->faceLists4,
                                     &topo->edgeLists2, &topo->edgeLists3,  &topo->edgeLists4};
    for (auto _ : state) {
        long sum = 0;
        for (const auto* h : all)
            for (const auto& list : *h)
                for (int child : list)
                    sum += child;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * entities(static_cast<int>(state.range(0))));
}

} // namespace

BENCHMARK(TopoFirstResize)->RangeMultiplier(10)->Range(250, 250000)->Unit(benchmark::kMillisecond);
BENCHMARK(RawFirstResize)->RangeMultiplier(10)->Range(250, 250000)->Unit(benchmark::kMillisecond);
BENCHMARK(TopoSecondResize)->RangeMultiplier(10)->Range(250, 250000)->Unit(benchmark::kMillisecond);
BENCHMARK(RawReadPass)->RangeMultiplier(10)->Range(250, 250000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
