// Document scale: a synthetic CAD document of N parts in the topology, scene, run-time and
// PMI components, each operation beside a hand-written equivalent over the same data held in
// plain std::vector tables (the Raw* benchmarks). Items are entities (nodes, faces and edges);
// bytes are what the operation has to touch at least, so that rates read against the memory
// bandwidth measured in the same run (MemoryWrite, MemoryRead).
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "BenchMain.h"
#include "veksg/veksg.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

using RawLists = std::vector<std::vector<int>>;
using Refs = std::vector<int>;
using Resizer = std::shared_ptr<veksg::SchemaResizer>;

constexpr int facesPerPart = 10;
constexpr int edgesPerPart = 30;
constexpr int verticesPerPart = 20;
constexpr int childrenPerAssembly = 8;
constexpr int pmisPerPart = 2;
constexpr int partsPerView = 10;

// Per part one node, 10 faces, 30 edges and 20 vertices; the nodes form an assembly tree.
struct Document {
    RawLists nodeFaces;    // out of order, one face repeated in every third part
    RawLists nodeEdges;    // each edge once per face around it, so every edge twice
    RawLists nodeChildren; // assembly children, ascending
    RawLists faceEdges;    // four edges, ascending except where the loop wraps
    RawLists edgeVerts;    // two vertices, mostly descending
    RawLists nodePmis;     // the part's annotations
    int parts = 0;
    int lastNode = -1;
    int lastFace = -1;
    int lastEdge = -1;
    int lastPmi = -1;
    int lastView = -1;
};

Document makeDocument(int parts) {
    Document doc;
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
        std::vector<int> children;
        for (int c = p * childrenPerAssembly + 1; c <= (p + 1) * childrenPerAssembly && c < parts;
             ++c)
            children.push_back(c);
        doc.nodeFaces.push_back(faces);
        doc.nodeEdges.push_back(edges);
        doc.nodeChildren.push_back(children);
        doc.nodePmis.push_back({p * pmisPerPart, p * pmisPerPart + 1});
    }
    doc.parts = parts;
    doc.lastNode = parts - 1;
    doc.lastFace = parts * facesPerPart - 1;
    doc.lastEdge = parts * edgesPerPart - 1;
    doc.lastPmi = parts * pmisPerPart - 1;
    doc.lastView = parts / partsPerView - 1;
    return doc;
}

// Built once per size and kept: the largest takes a second to make.
const Document& document(const benchmark::State& state) {
    static std::map<int, std::unique_ptr<Document>> made;
    const int parts = static_cast<int>(state.range(0));
    auto& doc = made[parts];
    if (!doc) doc = std::make_unique<Document>(makeDocument(parts));
    return *doc;
}

long entities(const Document& doc) {
    return static_cast<long>(doc.parts) * (1 + facesPerPart + edgesPerPart);
}

// Key spaces 6 and 7 stand for tessellated faces and edge polylines, 8 for nodes, 16 for
// annotations and 17 for saved views; 13 to 15 are not used by this document.
class DocumentResizer : public veksg::SchemaResizer {
public:
    explicit DocumentResizer(const Document& doc) : doc(doc) {}
    int lastKeyOf(const short& keySpace) override {
        switch (keySpace) {
        case 6:
        case 11:
            return doc.lastFace;
        case 7:
        case 12:
            return doc.lastEdge;
        case 8:
        case 10:
            return doc.lastNode;
        case 16:
            return doc.lastPmi;
        case 17:
            return doc.lastView;
        default:
            return -1;
        }
    }

private:
    const Document& doc;
};

Resizer resizerFor(const Document& doc) {
    return std::make_shared<DocumentResizer>(doc);
}

// Filling goes through each table's own append, so one template fills the components and
// their raw mirrors alike.
template <typename V>
void append(veksg::Container<int, V>& table, const V& value) {
    table.insert(value);
}
template <typename V>
void append(std::vector<V>& table, const V& value) {
    table.push_back(value);
}
template <typename Table>
void fillLists(Table& table, const RawLists& lists) {
    table.reserve(static_cast<int>(lists.size()));
    for (const auto& list : lists)
        append(table, list);
}

// Hand-written growth of the raw mirrors.
void growRefs(Refs& refs, int last) {
    if (refs.size() < static_cast<size_t>(last + 1)) refs.resize(static_cast<size_t>(last + 1), -1);
}
void growLists(RawLists& lists, int last) {
    if (lists.size() < static_cast<size_t>(last + 1)) lists.resize(static_cast<size_t>(last + 1));
}
// Grows, then sorts and uniques the lists held before (the new ones are empty).
void growSorted(RawLists& lists, int last) {
    const size_t held = lists.size();
    growLists(lists, last);
    for (size_t i = 0; i < held; ++i) {
        auto& list = lists[i];
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
    }
}

// Empties each table in argument order, keeping its capacity.
template <typename... Tables>
void clearAll(Tables&... tables) {
    (tables.clear(), ...);
}

long listBytes(const RawLists& lists) {
    long bytes = static_cast<long>(lists.size() * sizeof(std::vector<int>));
    for (const auto& list : lists)
        bytes += static_cast<long>(list.size() * sizeof(int));
    return bytes;
}

// ---- Topology ---------------------------------------------------------------------------

// The tables of SCSceneTopo that key spaces 10 to 12 size, in plain vectors; list i holds
// what nodeLists<i+1> (faceLists, edgeLists) holds.
struct RawTopology {
    std::array<RawLists, 11> nodeLists;
    std::array<Refs, 4> nodeRefs;
    std::vector<char> nodeFlags;
    std::array<RawLists, 4> faceLists;
    std::array<Refs, 2> faceRefs;
    std::array<RawLists, 4> edgeLists;
    Refs edgeRefs;
};

void fill(veksg::SCSceneTopo& topo, const Document& doc) {
    fillLists(topo.nodeLists3, doc.nodeFaces);
    fillLists(topo.nodeLists4, doc.nodeEdges);
    fillLists(topo.nodeLists5, doc.nodeChildren);
    fillLists(topo.faceLists2, doc.faceEdges);
    fillLists(topo.edgeLists2, doc.edgeVerts);
}

void fill(RawTopology& raw, const Document& doc) {
    fillLists(raw.nodeLists[2], doc.nodeFaces);
    fillLists(raw.nodeLists[3], doc.nodeEdges);
    fillLists(raw.nodeLists[4], doc.nodeChildren);
    fillLists(raw.faceLists[1], doc.faceEdges);
    fillLists(raw.edgeLists[1], doc.edgeVerts);
}

// Grows every table; the first `repeatsKept` keep their repeats, the others are sorted and
// uniqued.
template <size_t N>
void growAll(std::array<RawLists, N>& tables, size_t repeatsKept, int last) {
    for (size_t i = 0; i < N; ++i) {
        if (i < repeatsKept)
            growLists(tables[i], last);
        else
            growSorted(tables[i], last);
    }
}

// What a hand-written model does: grow every table of the three key spaces, sorting and
// uniquing the lists that must not repeat children.
void resize(RawTopology& raw, const Document& doc, const Resizer&) {
    for (auto& refs : raw.nodeRefs)
        growRefs(refs, doc.lastNode);
    growAll(raw.nodeLists, 2, doc.lastNode);
    if (raw.nodeFlags.size() < static_cast<size_t>(doc.lastNode + 1))
        raw.nodeFlags.resize(static_cast<size_t>(doc.lastNode + 1), 1);
    growAll(raw.faceLists, 1, doc.lastFace);
    for (auto& refs : raw.faceRefs)
        growRefs(refs, doc.lastFace);
    growAll(raw.edgeLists, 1, doc.lastEdge);
    growRefs(raw.edgeRefs, doc.lastEdge);
}

template <typename Visit>
void forEachSortedTable(const RawTopology& raw, Visit visit) {
    std::for_each(raw.nodeLists.begin() + 2, raw.nodeLists.end(), visit);
    std::for_each(raw.faceLists.begin() + 1, raw.faceLists.end(), visit);
    std::for_each(raw.edgeLists.begin() + 1, raw.edgeLists.end(), visit);
}

// Bytes the first resize must write (the grown tables) and read (the lists it dedupes).
long firstResizeBytes(const Document& doc) {
    RawTopology before;
    fill(before, doc);
    long bytes = 0;
    forEachSortedTable(before, [&](const RawLists& lists) { bytes += listBytes(lists); });
    const long nodes = doc.lastNode + 1;
    const long faces = doc.lastFace + 1;
    const long edges = doc.lastEdge + 1;
    const long list = sizeof(std::vector<int>);
    bytes += nodes * (4 * sizeof(int) + 8 * list + 1);
    bytes += faces * (2 * sizeof(int) + 3 * list);
    bytes += edges * (1 * sizeof(int) + 3 * list);
    return bytes;
}

// Bytes a read of every deduplicated list touches once the topology is resized.
long readPassBytes(const RawTopology& raw) {
    long bytes = 0;
    forEachSortedTable(raw, [&](const RawLists& lists) { bytes += listBytes(lists); });
    return bytes;
}

// ---- Scene ------------------------------------------------------------------------------

// SCScene's tables in plain vectors, under the same names.
struct RawScene {
    std::vector<std::shared_ptr<veksg::Mesh>> meshes;
    std::vector<veksg::MMaterial> meshMaterials;
    std::vector<std::shared_ptr<veksg::Polyline>> polylines;
    std::vector<veksg::PLMaterial> polylineMaterials;
    std::vector<veksg::BBox> boxes;
    std::vector<veksg::Transform> transforms;
    std::vector<veksg::Point3> points;
    std::vector<std::shared_ptr<veksg::Texture>> textures;
    Refs links6a;
    Refs links7;
    Refs links8;
    Refs links6b;
    std::vector<veksg::Font> fonts;
    RawLists hierarchy;
    std::vector<veksg::Text> texts;
    Refs textLinksA;
    Refs textLinksB;
};

// One small mesh, material, box, transform and polyline per part; two fonts.
template <typename Scene>
void fillScene(Scene& scene, const Document& doc) {
    for (int p = 0; p < doc.parts; ++p) {
        auto mesh = std::make_shared<veksg::Mesh>();
        mesh->vn.resize(12);
        append(scene.meshes, mesh);
        append(scene.meshMaterials, veksg::MMaterial());
        auto polyline = std::make_shared<veksg::Polyline>();
        polyline->points.resize(4);
        append(scene.polylines, polyline);
        append(scene.polylineMaterials, veksg::PLMaterial());
        append(scene.boxes, veksg::BBox());
        append(scene.transforms, veksg::Transform());
    }
    append(scene.fonts, veksg::Font());
    append(scene.fonts, veksg::Font());
}
void fill(veksg::SCScene& scene, const Document& doc) {
    fillScene(scene, doc);
}
void fill(RawScene& scene, const Document& doc) {
    fillScene(scene, doc);
}

void resize(RawScene& scene, const Document& doc, const Resizer&) {
    growRefs(scene.links6a, doc.lastFace);
    growRefs(scene.links6b, doc.lastFace);
    growRefs(scene.links7, doc.lastEdge);
    growLists(scene.hierarchy, static_cast<int>(scene.fonts.size()) - 1);
    growRefs(scene.textLinksA, static_cast<int>(scene.texts.size()) - 1);
    growRefs(scene.textLinksB, static_cast<int>(scene.texts.size()) - 1);
    growRefs(scene.links8, doc.lastNode);
}

void cleanup(RawScene& scene) {
    for (auto& mesh : scene.meshes) {
        if (mesh) {
            mesh->vn.clear();
            mesh->vnt.clear();
            mesh->vnc.clear();
        }
        mesh.reset();
    }
    scene.meshes.clear();
    for (auto& texture : scene.textures)
        texture.reset();
    scene.textures.clear();
    for (auto& polyline : scene.polylines) {
        if (polyline) {
            polyline->points.clear();
            polyline->values.clear();
        }
        polyline.reset();
    }
    scene.polylines.clear();
    clearAll(scene.meshMaterials, scene.polylineMaterials, scene.transforms, scene.boxes,
             scene.points, scene.links6a, scene.links6b, scene.links7, scene.fonts, scene.texts,
             scene.hierarchy, scene.textLinksA, scene.textLinksB);
}

long sceneResizeBytes(const Document& doc) {
    return static_cast<long>(sizeof(int)) *
           (2L * (doc.lastFace + 1) + doc.lastEdge + 1 + doc.lastNode + 1);
}

// ---- Run-time scene ---------------------------------------------------------------------

// SCSceneRT's resized and cleaned tables in plain vectors, under the same paths.
struct RawSceneRT {
    struct Lists {
        RawLists lists;
    };
    Lists meshes;
    Lists polylines;
    Lists vertices;
    Lists texts;
    struct {
        std::array<std::vector<bool>, 8> sets;
    } visibility;
    struct {
        std::array<Refs, 11> selection;
    } selection;
    RawLists nodeLists;
    std::vector<float> nodeValues;
    std::set<int> setA;
    std::set<int> setB;
    struct {
        std::array<std::vector<std::uint32_t>, 4> appearance;
    } appearance;
    struct {
        Refs refs1;
        Refs refs2;
        Refs refs3;
        Refs refs4;
        Refs refs5;
        int count = 0;
    } transientMaterials;
};

// What a viewer holds between frames: per-node lists and values, a selection of every
// tenth part, appearance overrides and sets of nodes.
template <typename SceneRT>
void fillSceneRT(SceneRT& rt, const Document& doc) {
    fillLists(rt.nodeLists, doc.nodePmis);
    for (int p = 0; p < doc.parts; ++p) {
        append(rt.nodeValues, 1.0f);
        if (p % 4 == 0) rt.setA.insert(p);
        if (p % 16 == 0) rt.setB.insert(p);
        if (p % partsPerView != 0) continue;
        rt.selection.selection[0].push_back(p);
        rt.selection.selection[1].push_back(p * facesPerPart);
        rt.appearance.appearance[0].push_back(0xff0000ffu);
        append(rt.transientMaterials.refs1, p);
        append(rt.transientMaterials.refs2, p);
    }
}
void fill(veksg::SCSceneRT& rt, const Document& doc) {
    fillSceneRT(rt, doc);
}
void fill(RawSceneRT& rt, const Document& doc) {
    fillSceneRT(rt, doc);
}

void resize(RawSceneRT& rt, const Document& doc, const Resizer&) {
    auto& sets = rt.visibility.sets;
    sets[0].resize(static_cast<size_t>(doc.lastNode + 1), true);
    if (rt.nodeValues.size() < static_cast<size_t>(doc.lastNode + 1))
        rt.nodeValues.resize(static_cast<size_t>(doc.lastNode + 1), 0.0f);
    for (auto* buffer : {&rt.polylines, &rt.meshes, &rt.vertices, &rt.texts})
        growLists(buffer->lists, doc.lastNode);
    sets[2].resize(static_cast<size_t>(doc.lastFace + 1), true);
    sets[3].resize(static_cast<size_t>(doc.lastEdge + 1), false);
    sets[1].resize(static_cast<size_t>(doc.lastPmi + 1), false);
}

void cleanup(RawSceneRT& rt) {
    for (auto& set : rt.visibility.sets)
        set.clear();
    clearAll(rt.setB, rt.setA, rt.nodeValues, rt.nodeLists);
    for (auto& list : rt.appearance.appearance)
        list.clear();
    for (auto& list : rt.selection.selection)
        list.clear();
    auto& transient = rt.transientMaterials;
    clearAll(transient.refs1, transient.refs3, transient.refs4, transient.refs5, transient.refs2);
    transient.count = 0;
}

long sceneRTResizeBytes(const Document& doc) {
    const long nodes = doc.lastNode + 1;
    const long bits = nodes + doc.lastFace + 1 + doc.lastEdge + 1 + doc.lastPmi + 1;
    return bits / 8 + nodes * static_cast<long>(sizeof(float) + 4 * sizeof(std::vector<int>));
}

// ---- PMI --------------------------------------------------------------------------------

// SCPmi's tables in plain vectors, under the same names.
struct RawPmi {
    std::vector<std::shared_ptr<veksg::PMI>> pmis;
    Refs pmiList1;
    Refs pmiList2;
    std::vector<std::shared_ptr<veksg::View>> views;
    std::vector<std::shared_ptr<veksg::ViewSet>> viewSets;
    std::vector<std::shared_ptr<veksg::Section>> sections;
    std::vector<veksg::BBox> pmiBoxes;
    RawLists relation1;
    RawLists relation2;
    RawLists relation3;
    RawLists relation4;
    Refs map1;
    RawLists relation5;
    Refs map2;
    RawLists relation6;
    RawLists relation7;
    Refs map3;
    RawLists relation8;
    RawLists relation9;
    Refs map4;
    RawLists relation10;
    Refs map5;
    RawLists relation11;
    RawLists relation12;
    RawLists relation13;
    std::vector<std::shared_ptr<veksg::Value<std::shared_ptr<wchar_t>, 5>>> pmiAttributes;
    RawLists relation14;
    Refs map6;
    std::shared_ptr<void> pmiObject;
    std::set<int> idSet1;
    std::set<int> idSet2;
};

// Two annotations per part with their boxes, the part's annotations per node and the node
// of each annotation.
template <typename Pmi>
void fillPmi(Pmi& pmi, const Document& doc) {
    fillLists(pmi.relation1, doc.nodePmis);
    pmi.pmis.reserve(doc.lastPmi + 1);
    for (int p = 0; p < doc.parts; ++p)
        for (int a = 0; a < pmisPerPart; ++a) {
            append(pmi.pmis, std::shared_ptr<veksg::PMI>(std::make_shared<veksg::Text3D>(L"")));
            append(pmi.pmiBoxes, veksg::BBox());
            append(pmi.relation4, std::vector<int>{p});
            pmi.idSet1.insert(p * pmisPerPart + a);
        }
}
void fill(veksg::SCPmi& pmi, const Document& doc) {
    fillPmi(pmi, doc);
}
void fill(RawPmi& pmi, const Document& doc) {
    fillPmi(pmi, doc);
}

void resize(RawPmi& pmi, const Document& doc, const Resizer&) {
    for (auto* lists : {&pmi.relation1, &pmi.relation2, &pmi.relation3})
        growLists(*lists, doc.lastNode);
    growRefs(pmi.map2, doc.lastPmi);
    for (auto* lists : {&pmi.relation4, &pmi.relation11, &pmi.relation12, &pmi.relation13,
                        &pmi.relation5, &pmi.relation6})
        growLists(*lists, doc.lastPmi);
    growLists(pmi.relation9, doc.lastView);
    growLists(pmi.relation8, doc.lastView);
    growRefs(pmi.map4, doc.lastView);
    growRefs(pmi.map5, doc.lastView);
    growLists(pmi.relation10, doc.lastView);
}

void cleanup(RawPmi& pmi) {
    clearAll(pmi.pmis, pmi.pmiList1, pmi.pmiList2, pmi.views, pmi.viewSets, pmi.sections,
             pmi.pmiBoxes, pmi.relation1, pmi.relation2, pmi.relation3, pmi.relation4, pmi.map1,
             pmi.relation5, pmi.map2, pmi.relation6, pmi.relation7, pmi.map3, pmi.relation8,
             pmi.relation9, pmi.map4, pmi.relation10, pmi.map5, pmi.relation11, pmi.relation12,
             pmi.relation13, pmi.pmiAttributes, pmi.relation14, pmi.map6, pmi.idSet1, pmi.idSet2);
    pmi.pmiObject.reset();
}

long pmiResizeBytes(const Document& doc) {
    const long list = sizeof(std::vector<int>);
    const long nodes = doc.lastNode + 1;
    const long pmis = doc.lastPmi + 1;
    const long views = doc.lastView + 1;
    // relation4 is already full: the annotations' five other lists and one map grow.
    return 3 * nodes * list + pmis * (5 * list + 4) + views * (3 * list + 2 * 4);
}

// ---- One body per operation, for the components and their raw mirrors alike -----------

void resize(veksg::Schema& component, const Document&, const Resizer& resizer) {
    component.resize(resizer);
}
void cleanup(veksg::Schema& component) {
    component.cleanup();
}

template <typename T>
std::unique_ptr<T> make(const Document& doc) {
    auto subject = std::make_unique<T>();
    fill(*subject, doc);
    return subject;
}

template <typename T>
std::unique_ptr<T> makeResized(const Document& doc) {
    auto subject = make<T>(doc);
    resize(*subject, doc, resizerFor(doc));
    return subject;
}

// Times `operation` on a fresh subject per iteration; making and destroying it are not timed.
template <typename Make, typename Operation>
void timeOnFresh(benchmark::State& state, Make makeSubject, Operation operation) {
    for (auto _ : state) {
        state.PauseTiming();
        auto subject = makeSubject();
        state.ResumeTiming();
        operation(*subject);
        benchmark::ClobberMemory();
        state.PauseTiming();
        subject.reset();
        state.ResumeTiming();
    }
}

// Heap bytes that `make` leaves allocated, counted by the allocator itself (so including
// its per-block overhead); 0 where the allocator cannot tell.
template <typename Make>
long heapBytesOf(Make make) {
#if defined(__GLIBC__)
    const auto before = mallinfo2();
    auto made = make();
    const auto after = mallinfo2();
    benchmark::DoNotOptimize(made.get());
    return static_cast<long>((after.uordblks + after.hblkhd) - (before.uordblks + before.hblkhd));
#else
    (void)make;
    return 0;
#endif
}

void setRates(benchmark::State& state, const Document& doc, long bytes) {
    state.SetItemsProcessed(state.iterations() * entities(doc));
    if (bytes > 0) state.SetBytesProcessed(state.iterations() * bytes);
}

// The first resize of a freshly filled subject.
template <typename T>
void timeResize(benchmark::State& state, long (*bytesOf)(const Document&)) {
    const auto& doc = document(state);
    const auto resizer = resizerFor(doc);
    timeOnFresh(
        state, [&] { return make<T>(doc); }, [&](T& subject) { resize(subject, doc, resizer); });
    setRates(state, doc, bytesOf(doc));
}

template <typename T>
void timeCleanup(benchmark::State& state) {
    const auto& doc = document(state);
    timeOnFresh(
        state, [&] { return makeResized<T>(doc); }, [](T& subject) { cleanup(subject); });
    setRates(state, doc, 0);
}

// Copy construction of a filled and resized subject; also reports the heap bytes per entity
// of one copy.
template <typename T>
void timeCopy(benchmark::State& state) {
    const auto& doc = document(state);
    const auto source = makeResized<T>(doc);
    const long bytes = heapBytesOf([&] { return std::make_unique<T>(*source); });
    timeOnFresh(
        state, [] { return std::make_unique<std::unique_ptr<T>>(); },
        [&](std::unique_ptr<T>& copy) { copy = std::make_unique<T>(*source); });
    setRates(state, doc, bytes);
    state.counters["bytes_per_entity"] = static_cast<double>(bytes) / entities(doc);
}

// Nothing changed since the first resize: every list is already strictly ascending.
void TopoSecondResize(benchmark::State& state) {
    const auto& doc = document(state);
    const auto resizer = resizerFor(doc);
    auto topo = makeResized<veksg::SCSceneTopo>(doc);
    for (auto _ : state) {
        topo->resize(resizer);
        benchmark::ClobberMemory();
    }
    topo.reset();
    setRates(state, doc, readPassBytes(*makeResized<RawTopology>(doc)));
}

// One plain read of every list that the second resize has to look at.
void RawReadPass(benchmark::State& state) {
    const auto& doc = document(state);
    const auto raw = makeResized<RawTopology>(doc);
    for (auto _ : state) {
        long sum = 0;
        forEachSortedTable(*raw, [&](const RawLists& lists) {
            for (const auto& list : lists)
                for (int child : list)
                    sum += child;
        });
        benchmark::DoNotOptimize(sum);
    }
    setRates(state, doc, readPassBytes(*raw));
}

// ---- Batched meshes, refilled every frame ------------------------------------------------

// MeshRT's tables in plain vectors, under the same names.
struct RawMeshRT {
    std::vector<veksg::PairT<vekmath::Tuple<float, 16>, int>> instances;
    Refs refs1;
    Refs refs2;
    Refs refs3;
    Refs refs4;
    RawLists lists;
    Refs refs5;
    std::vector<unsigned char> flags;
    Refs refs6;
    bool dirty = false;

    void clear() {
        clearAll(instances, refs1, refs2, refs3, refs4, lists, refs5, flags, refs6);
        dirty = false;
    }
};

// One instance of each part's mesh per frame, with its links, flags and index list.
template <typename Batch>
void fillFrame(Batch& batch, const Document& doc) {
    const veksg::PairT<vekmath::Tuple<float, 16>, int> placed(
        vekmath::MatrixUtils::createIdentity(), 0);
    for (int p = 0; p < doc.parts; ++p) {
        append(batch.instances, placed);
        for (auto* refs :
             {&batch.refs1, &batch.refs2, &batch.refs3, &batch.refs4, &batch.refs5, &batch.refs6})
            append(*refs, p);
        append(batch.lists, doc.nodePmis[static_cast<size_t>(p)]);
        append(batch.flags, static_cast<unsigned char>(1));
    }
}

// `clear` keeps every table's storage, so a frame of the same size reallocates nothing: the
// counter stays 0.
template <typename Batch>
void timeFrames(benchmark::State& state) {
    const auto& doc = document(state);
    Batch batch;
    fillFrame(batch, doc);
    const void* storage = &*batch.instances.begin();
    long reallocations = 0;
    for (auto _ : state) {
        batch.clear();
        fillFrame(batch, doc);
        reallocations += &*batch.instances.begin() != storage;
        benchmark::ClobberMemory();
    }
    setRates(state, doc, 0);
    state.counters["reallocations"] = static_cast<double>(reallocations);
}

// ---- Memory bandwidth -------------------------------------------------------------------

// A buffer of 4 KiB per part, about what the topology of one part occupies.
std::vector<std::int64_t> bandwidthBuffer(const benchmark::State& state) {
    return std::vector<std::int64_t>(static_cast<size_t>(state.range(0)) * 512, 1);
}

void MemoryWrite(benchmark::State& state) {
    auto buffer = bandwidthBuffer(state);
    for (auto _ : state) {
        std::memset(buffer.data(), 0xff, buffer.size() * sizeof(std::int64_t));
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long>(buffer.size() * 8));
}

void MemoryRead(benchmark::State& state) {
    const auto buffer = bandwidthBuffer(state);
    for (auto _ : state) {
        const std::int64_t sum = std::accumulate(buffer.begin(), buffer.end(), std::int64_t{0});
        benchmark::DoNotOptimize(sum);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<long>(buffer.size() * 8));
}

// About 10^4 to 10^7 entities, three sizes per decade.
void documentSizes(benchmark::internal::Benchmark* b) {
    for (int parts : {250, 800, 2500, 8000, 25000, 80000, 250000})
        b->Arg(parts);
    b->Unit(benchmark::kMillisecond);
}

template <typename... Args>
void add(const std::string& name, Args... args) {
    benchmark::RegisterBenchmark(name.c_str(), args...)->Apply(documentSizes);
}

// A component's resize and cleanup, each beside the same on its raw mirror.
template <typename Component, typename Raw>
void addResizeAndCleanup(const std::string& name, long (*bytesOf)(const Document&)) {
    add(name + "Resize", &timeResize<Component>, bytesOf);
    add("Raw" + name + "Resize", &timeResize<Raw>, bytesOf);
    add(name + "Cleanup", &timeCleanup<Component>);
    add("Raw" + name + "Cleanup", &timeCleanup<Raw>);
}

template <typename Component, typename Raw>
void addCopies(const std::string& name) {
    add(name + "Copy", &timeCopy<Component>);
    add("Raw" + name + "Copy", &timeCopy<Raw>);
}

void registerAll() {
    add("TopoFirstResize", &timeResize<veksg::SCSceneTopo>, &firstResizeBytes);
    add("RawFirstResize", &timeResize<RawTopology>, &firstResizeBytes);
    add("TopoSecondResize", &TopoSecondResize);
    add("RawReadPass", &RawReadPass);
    addCopies<veksg::SCSceneTopo, RawTopology>("Topo");
    addResizeAndCleanup<veksg::SCScene, RawScene>("Scene", &sceneResizeBytes);
    addCopies<veksg::SCScene, RawScene>("Scene");
    addResizeAndCleanup<veksg::SCSceneRT, RawSceneRT>("SceneRT", &sceneRTResizeBytes);
    addResizeAndCleanup<veksg::SCPmi, RawPmi>("Pmi", &pmiResizeBytes);
    add("MeshFrame", &timeFrames<veksg::MeshRT>);
    add("RawMeshFrame", &timeFrames<RawMeshRT>);
    add("MemoryWrite", &MemoryWrite);
    add("MemoryRead", &MemoryRead);
}

} // namespace

int main(int argc, char** argv) {
    registerAll();
    return veksgbench::runBenchmarks(argc, argv);
}
