// Snapshots: writing and reading a synthetic CAD document of N parts through a file, beside
// the baseline that does only the unavoidable work of a read (the file into memory, zstd's
// decompression, a memcpy into vectors of the sizes the document holds) and the machine's
// memcpy bandwidth. Bytes are the tables' bytes before compression.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <zstd.h>

#include "BenchMain.h"
#include "veksg/io/Snapshot.h"
#include "veksg/veksg.h"

namespace {

// A part's mesh: a curved grid of 32 x 32 squares, two triangles each, three vertices per
// triangle as the data model keeps them (so each grid point recurs, as in a real mesh).
constexpr int gridSquares = 32;
constexpr int facesPerPart = 20;
constexpr int edgesPerPart = 50;

// Per part a mesh, one node, faces, edges, their relations and per-key tables.
std::vector<std::shared_ptr<veksg::Schema>> cadDocument(int parts) {
    auto scene = std::make_shared<veksg::SCScene>();
    auto topo = std::make_shared<veksg::SCSceneTopo>();
    auto res = std::make_shared<veksg::SCSceneRes>();
    unsigned seed = 12345;
    auto noise = [&seed] {
        seed = seed * 1103515245u + 12345u;
        return static_cast<float>((seed >> 8) & 0xFFFF) / 65536.0f;
    };
    for (int part = 0; part < parts; ++part) {
        auto mesh = std::make_shared<veksg::Mesh>();
        const float radius = 10.0f + static_cast<float>(part % 17);
        auto point = [radius](int i, int j) {
            const float a = 0.05f * static_cast<float>(i);
            const float z = 0.7f * static_cast<float>(j);
            return veksg::VN{{radius * std::cos(a), radius * std::sin(a), z},
                             {std::cos(a), std::sin(a), 0.0f}};
        };
        for (int i = 0; i < gridSquares; ++i)
            for (int j = 0; j < gridSquares; ++j)
                for (const auto& [di, dj] :
                     {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}})
                    mesh->vn.push_back(point(i + di, j + dj));
        scene->meshes.insert(mesh);
        scene->links6a.insert(part);
        veksg::Transform placed;
        placed.matrix[12] = static_cast<float>(part);
        placed.valid = true;
        scene->transforms.insert(placed);
        scene->boxes.insert({{0, 0, 0}, {noise(), noise(), noise()}, true});
        veksg::Node node;
        node.id = part;
        node.setName((L"part-" + std::to_wstring(part)).c_str());
        topo->nodes.insert(node);
        topo->nodeRefs1.insert(part - 1);
        const int face0 = topo->faces.size();
        const int edge0 = topo->edges.size();
        for (int f = 0; f < facesPerPart; ++f) {
            topo->faces.insert({face0 + f, false, {noise(), 0, 0}, {0, noise(), 0}});
            topo->nodeLists4.addChild(part, face0 + f);
            topo->faceLists2.addChild(face0 + f, {edge0 + f, edge0 + f + 1, edge0 + f + 2});
            topo->faceRefs2.insert(part);
            res->primitivesA.insert({face0 + f, 300 * f, 300, 4, {noise(), noise(), noise()}});
        }
        for (int e = 0; e < edgesPerPart; ++e) {
            topo->edges.insert({edge0 + e, part, {noise(), 0, 0}, {0, 0, noise()}, 1});
            topo->edgeLists2.addChild(edge0 + e, {2 * (edge0 + e), 2 * (edge0 + e) + 1});
            topo->nodeLists5.addChild(part, edge0 + e);
        }
    }
    return {scene, topo, res};
}

struct Fixture {
    std::vector<std::shared_ptr<veksg::Schema>> document;
    std::string path;
    std::uint64_t tableBytes = 0;
    /// Bytes of every vector the read document holds, in the order a read fills them.
    std::vector<std::size_t> vectors;
};

template <typename V>
void addVectors(const veksg::Container<int, V>& table, std::vector<std::size_t>& out) {
    out.push_back(static_cast<std::size_t>(table.size()) * sizeof(V));
    if constexpr (std::is_same_v<V, std::vector<int>>)
        for (const auto& list : table)
            out.push_back(list.size() * sizeof(int));
}

Fixture& fixture(int parts) {
    static std::unique_ptr<Fixture> made;
    static int madeFor = -1;
    if (made && madeFor == parts) return *made;
    made = std::make_unique<Fixture>();
    madeFor = parts;
    made->document = cadDocument(parts);
    made->path = "/tmp/veksg-bench-" + std::to_string(parts) + ".vks";
    made->tableBytes = veksg::io::writeSnapshot(made->path, made->document).tableBytes;
    auto& out = made->vectors;
    for (const auto& component : made->document)
        veksg::visitComponent(*component, [&](const auto& concrete) {
            veksg::forEachTable(concrete, [&](const veksg::TableInfo&, const auto& member) {
                using M = std::remove_const_t<std::remove_reference_t<decltype(member)>>;
                if constexpr (std::is_base_of_v<veksg::Container<int, std::vector<int>>, M>)
                    addVectors<std::vector<int>>(member, out);
                else if constexpr (std::is_same_v<M, veksg::Container<int, veksg::Node>>)
                    addVectors(member, out);
                else if constexpr (std::is_same_v<M, veksg::Container<int, int>> ||
                                   std::is_same_v<M, veksg::Container<int, veksg::Face>> ||
                                   std::is_same_v<M, veksg::Container<int, veksg::Edge>> ||
                                   std::is_same_v<M, veksg::Container<int, veksg::BBox>> ||
                                   std::is_same_v<M, veksg::Container<int, veksg::Transform>> ||
                                   std::is_same_v<M, veksg::Container<int, veksg::PrimitiveInfo>>)
                    addVectors(member, out);
            });
        });
    for (const auto& mesh : std::static_pointer_cast<veksg::SCScene>(made->document[0])->meshes)
        out.push_back(mesh->vn.size() * sizeof(veksg::VN));
    return *made;
}

std::vector<char> fileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    std::vector<char> bytes(static_cast<std::size_t>(in.tellg()));
    in.seekg(0);
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

void SnapshotRead(benchmark::State& state) {
    Fixture& f = fixture(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        veksg::io::Snapshot read = veksg::io::readSnapshot(f.path);
        benchmark::DoNotOptimize(read.components.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * f.tableBytes));
}

// The file into memory, every zstd frame decompressed, then the tables' bytes copied into
// vectors of the sizes the document holds.
void SnapshotReadBaseline(benchmark::State& state) {
    Fixture& f = fixture(static_cast<int>(state.range(0)));
    ZSTD_DCtx* context = ZSTD_createDCtx();
    for (auto _ : state) {
        const std::vector<char> bytes = fileBytes(f.path);
        const std::unique_ptr<char[]> raw(new char[f.tableBytes]);
        std::size_t used = 0;
        for (std::size_t at = 32; at < bytes.size();) {
            std::uint16_t names[2];
            std::uint64_t sizes[2];
            std::memcpy(names, &bytes[at + 2], 4);
            std::memcpy(sizes, &bytes[at + 16], 16);
            const char* payload = &bytes[at + 32 + names[0] + names[1] + 8];
            if (bytes[at + 1] == 1)
                ZSTD_decompressDCtx(context, raw.get() + used, sizes[0], payload, sizes[1]);
            else
                std::memcpy(raw.get() + used, payload, sizes[1]);
            used += sizes[0];
            at = static_cast<std::size_t>(payload - bytes.data()) + sizes[1];
        }
        std::vector<std::vector<char>> tables;
        tables.reserve(f.vectors.size());
        std::size_t from = 0;
        for (const std::size_t size : f.vectors) {
            tables.emplace_back(size);
            const std::size_t n = std::min(size, used - from);
            std::memcpy(tables.back().data(), raw.get() + from, n);
            from += n;
        }
        benchmark::DoNotOptimize(tables.data());
    }
    ZSTD_freeDCtx(context);
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * f.tableBytes));
}

void SnapshotWrite(benchmark::State& state) {
    Fixture& f = fixture(static_cast<int>(state.range(0)));
    const std::string path = f.path + ".written";
    for (auto _ : state)
        benchmark::DoNotOptimize(veksg::io::writeSnapshot(path, f.document).fileBytes);
    std::remove(path.c_str());
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * f.tableBytes));
}

// This machine's memcpy between two buffers of the size of the tables.
void Memcpy(benchmark::State& state) {
    const std::uint64_t bytes = fixture(static_cast<int>(state.range(0))).tableBytes;
    std::vector<char> from(bytes, 1);
    std::vector<char> to(bytes, 0);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * bytes));
}

BENCHMARK(SnapshotRead)->Arg(250)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(SnapshotReadBaseline)->Arg(250)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(SnapshotWrite)->Arg(250)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(Memcpy)->Arg(250)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return veksgbench::runBenchmarks(argc, argv);
}
