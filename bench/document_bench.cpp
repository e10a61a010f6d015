// Document scale: a synthetic CAD document of N parts in the topology, scene, run-time and
// PMI components, each operation beside the same on the component's raw mirror: its tables as
// plain std::vector, made from the table catalogue and grown and emptied by the same rules
// (the Raw* benchmarks). Items are entities (nodes, faces and edges); bytes are what the
// operation has to touch at least, so that rates read against the memory bandwidth measured
// in the same run (MemoryWrite, MemoryRead).
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <numeric>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include <benchmark/benchmark.h>

#include "BenchMain.h"
#include "veksg/veksg.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace {

using RawLists = std::vector<std::vector<int>>;
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

// ---- Raw mirrors ------------------------------------------------------------------------

// A raw mirror holds a component's members as its catalogue lists them: a keyed table as a
// std::vector of its values (a hierarchy's lists as vectors of ints), a nested record as a
// mirror of its own, anything else as it is. Each member sits behind a small interface, so
// the mirror pays one call per table, while every loop over a table's entries stays plain.

// Shared meshes and polylines are emptied before release: other holders see them empty too.
void emptyShared(veksg::Mesh& mesh) {
    mesh.vn.clear();
    mesh.vnt.clear();
    mesh.vnc.clear();
}
void emptyShared(veksg::Polyline& polyline) {
    polyline.points.clear();
    polyline.values.clear();
}

template <typename T, template <typename> class Op, typename = void>
constexpr bool has = false;
template <typename T, template <typename> class Op>
constexpr bool has<T, Op, std::void_t<Op<T>>> = true;
template <typename T>
using KeyedOp = decltype(&T::resizeToFitKey);
template <typename T>
using ClearOp = decltype(std::declval<T&>().clear());
template <typename T>
using InstancesOp = decltype(T::instances);
template <typename T>
using SharedListsOp = decltype(emptyShared(*std::declval<T&>().front()));
template <typename T>
constexpr bool isVector = false;
template <typename E>
constexpr bool isVector<std::vector<E>> = true;

template <typename Member>
auto mirrored(const Member& member) {
    if constexpr (has<Member, KeyedOp>)
        return std::vector<typename Member::iterator::value_type>(member.begin(), member.end());
    else
        return member;
}
template <typename Member>
using Mirrored = decltype(mirrored(std::declval<const Member&>()));

// Asks the resizer once per key space, however many tables share it.
struct KeyAnswers {
    int operator()(short keySpace) {
        auto& answer = answers.at(static_cast<size_t>(keySpace));
        if (!answer) answer = resizer.lastKeyOf(keySpace);
        return *answer;
    }
    veksg::SchemaResizer& resizer;
    std::array<std::optional<int>, 32> answers{};
};

// Grows a table to hold key `last` with the library's values (no link, zero, flag set, empty
// list), then sorts and uniques the lists held before if the hierarchy must not repeat any.
template <typename V>
void growTable(std::vector<V>& table, int last, bool dropsRepeats) {
    const size_t held = table.size();
    const size_t count = static_cast<size_t>(last) + 1;
    if (last < 0) return;
    if constexpr (std::is_class_v<V>) {
        if (held < count) table.resize(count);
    } else if (held < count) {
        const int added = std::is_same_v<V, int> ? -1 : std::is_floating_point_v<V> ? 0 : 1;
        table.resize(count, static_cast<V>(added));
    }
    if constexpr (std::is_same_v<V, std::vector<int>>) {
        if (!dropsRepeats) return;
        for (size_t i = 0; i < held; ++i) {
            auto& list = table[i];
            std::sort(list.begin(), list.end());
            list.erase(std::unique(list.begin(), list.end()), list.end());
        }
    }
}

// A visibility set follows its key space exactly; new bits of edges (12) and annotations (16)
// start cleared. Key space 6 stands in for faces (11) only while 11 is empty.
void resizeBits(std::vector<bool>& bits, short keySpace, KeyAnswers& ask) {
    if (keySpace < 0 || (keySpace == 6 && ask(11) > -1)) return;
    const int last = ask(keySpace);
    if (last > -1) bits.resize(static_cast<size_t>(last) + 1, keySpace != 12 && keySpace != 16);
}

// Empties a member as its component does: tables keep their capacity, settings reset.
template <typename T>
void emptyMember(T& member) {
    if constexpr (has<T, SharedListsOp>)
        for (auto& held : member) {
            if (held) emptyShared(*held);
            held.reset();
        }
    if constexpr (has<T, ClearOp>)
        member.clear();
    else
        member = T{};
}
template <typename E, size_t N>
void emptyMember(std::array<E, N>& members) {
    for (auto& member : members)
        emptyMember(member);
}

class Mirror;

// One member of a mirror.
struct RawTable {
    RawTable(const veksg::TableInfo& info, bool keptByClear)
        : info(info), keptByClear(keptByClear) {}
    virtual ~RawTable() = default;
    virtual std::unique_ptr<RawTable> copy() const = 0;
    // Entries, for the tables that follow this one.
    virtual int size() const = 0;
    virtual void resize(const Mirror& owner, KeyAnswers& ask) = 0;
    virtual void clear() = 0;
    // Bytes its slots take (a bit set's bits in bytes), to count what a resize writes.
    virtual long slotBytes() const = 0;

    const veksg::TableInfo info;
    const bool keptByClear;
    // Where the tables that `info.follows` and `info.onlyWhile` name sit in the mirror.
    int followsAt = -1;
    int onlyWhileAt = -1;
};

// A component's (or a nested record's) members in catalogue order.
class Mirror {
public:
    Mirror() = default;
    Mirror(const Mirror& other) {
        for (const auto& table : other.tables)
            tables.push_back(table->copy());
    }
    Mirror(Mirror&&) noexcept = default;

    void add(std::unique_ptr<RawTable> table) {
        if (table->info.follows) table->followsAt = indexOf(table->info.follows);
        if (table->info.onlyWhile) table->onlyWhileAt = indexOf(table->info.onlyWhile);
        tables.push_back(std::move(table));
    }
    // Grows what the catalogue says, as the component's resize does.
    void resize(const Resizer& resizer) {
        KeyAnswers ask{*resizer};
        resize(ask);
    }
    void resize(KeyAnswers& ask) {
        for (auto& table : tables)
            table->resize(*this, ask);
    }
    // Empties what the component's cleanup (a buffer's clear) empties.
    void clear() {
        for (auto& table : tables)
            if (!table->keptByClear) table->clear();
    }
    void cleanup() { clear(); }
    // Its key space's answer, or the last key of the table it follows; -1 for none.
    int lastKeyFor(const RawTable& table, KeyAnswers& ask) const {
        if (table.info.keySpace > -1) return ask(table.info.keySpace);
        if (table.followsAt < 0 || (table.onlyWhileAt > -1 && at(table.onlyWhileAt).size() == 0))
            return -1;
        return at(table.followsAt).size() - 1;
    }
    // A member by name, "record.member" inside a nested record.
    RawTable& find(std::string_view path);
    long slotBytes() const {
        return std::accumulate(tables.begin(), tables.end(), 0L, [](long bytes, const auto& table) {
            return bytes + table->slotBytes();
        });
    }
    // The lists a resize sorts and uniques.
    std::vector<const RawLists*> dedupedLists() const;

private:
    const RawTable& at(int index) const { return *tables[static_cast<size_t>(index)]; }
    int indexOf(std::string_view name) const {
        for (size_t i = 0; i < tables.size(); ++i)
            if (name == tables[i]->info.name) return static_cast<int>(i);
        throw std::invalid_argument("no member " + std::string(name));
    }

    std::vector<std::unique_ptr<RawTable>> tables;
};

template <typename T>
struct Stored final : RawTable {
    Stored(const veksg::TableInfo& info, bool keptByClear, T value)
        : RawTable(info, keptByClear), value(std::move(value)) {}
    std::unique_ptr<RawTable> copy() const override { return std::make_unique<Stored>(*this); }
    int size() const override {
        if constexpr (isVector<T>) return static_cast<int>(value.size());
        return 0;
    }
    void resize(const Mirror& owner, KeyAnswers& ask) override {
        if constexpr (std::is_same_v<T, Mirror>)
            value.resize(ask);
        else if constexpr (std::is_same_v<T, std::vector<bool>>)
            resizeBits(value, info.keySpace, ask);
        else if constexpr (isVector<T>)
            growTable(value, owner.lastKeyFor(*this, ask), info.dropsRepeats);
    }
    void clear() override { emptyMember(value); }
    long slotBytes() const override {
        if constexpr (std::is_same_v<T, Mirror>)
            return value.slotBytes();
        else if constexpr (std::is_same_v<T, std::vector<bool>>)
            return static_cast<long>(value.size() / 8);
        else if constexpr (isVector<T>)
            return static_cast<long>(value.size() * sizeof(typename T::value_type));
        return 0;
    }

    T value;
};

RawTable& Mirror::find(std::string_view path) {
    const size_t dot = path.find('.');
    RawTable& table = *tables[static_cast<size_t>(indexOf(path.substr(0, dot)))];
    if (dot == std::string_view::npos) return table;
    return dynamic_cast<Stored<Mirror>&>(table).value.find(path.substr(dot + 1));
}

std::vector<const RawLists*> Mirror::dedupedLists() const {
    std::vector<const RawLists*> lists;
    for (const auto& table : tables)
        if (table->info.dropsRepeats)
            lists.push_back(&dynamic_cast<const Stored<RawLists>&>(*table).value);
    return lists;
}

// What a component's cleanup keeps: the topology all, SCScene its node links, SCSceneRT its
// batched buffers (the records holding instances: only their own clear empties them).
template <typename Record, typename Member>
bool keptByCleanup(const veksg::TableInfo& info) {
    if constexpr (std::is_same_v<Record, veksg::SCScene>)
        return std::string_view(info.name) == "links8";
    else if constexpr (std::is_same_v<Record, veksg::SCSceneRT>)
        return has<Member, InstancesOp>;
    return std::is_same_v<Record, veksg::SCSceneTopo>;
}

template <typename Record>
Mirror mirrorOf(const Record& record) {
    Mirror mirror;
    veksg::forEachTable(record, [&mirror](const veksg::TableInfo& info, const auto& member) {
        using Member = std::remove_const_t<std::remove_reference_t<decltype(member)>>;
        const bool kept = keptByCleanup<Record, Member>(info);
        if constexpr (veksg::hasTables<Member>)
            mirror.add(std::make_unique<Stored<Mirror>>(info, kept, mirrorOf(member)));
        else
            mirror.add(std::make_unique<Stored<Mirrored<Member>>>(info, kept, mirrored(member)));
    });
    return mirror;
}

template <typename C>
struct Raw : Mirror {
    Raw() : Mirror(mirrorOf(C())) {}
};

long dedupedBytes(const Mirror& raw) {
    long bytes = 0;
    for (const auto* lists : raw.dedupedLists()) {
        bytes += static_cast<long>(lists->size() * sizeof(std::vector<int>));
        for (const auto& list : *lists)
            bytes += static_cast<long>(list.size() * sizeof(int));
    }
    return bytes;
}

// ---- Data: one fill template for a component and its mirror ----------------------------

// A component's member by name, "record.member" inside a nested record.
template <typename Member, typename Record>
std::enable_if_t<veksg::hasTables<Record>, Member&> at(Record& record, std::string_view path) {
    const size_t dot = path.find('.');
    Member* found = nullptr;
    veksg::forEachTable(record, [&](const veksg::TableInfo& info, auto& member) {
        if (path.substr(0, dot) != info.name) return;
        if constexpr (std::is_convertible_v<decltype(&member), Member*>)
            found = &member;
        else if constexpr (veksg::hasTables<std::remove_reference_t<decltype(member)>>)
            found = &at<Member>(member, path.substr(dot + 1));
    });
    if (!found) throw std::invalid_argument("no member " + std::string(path));
    return *found;
}

// The same member of a mirror, as the mirror holds it.
template <typename Member>
Mirrored<Member>& at(Mirror& mirror, std::string_view path) {
    return dynamic_cast<Stored<Mirrored<Member>>&>(mirror.find(path)).value;
}

template <typename V, typename Subject>
auto& table(Subject& subject, std::string_view path) {
    return at<veksg::Container<int, V>>(subject, path);
}
template <typename Subject>
auto& lists(Subject& subject, std::string_view path) {
    return table<std::vector<int>>(subject, path);
}

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

template <typename T, typename C>
constexpr bool isOrMirrors = std::is_same_v<T, C> || std::is_same_v<T, Raw<C>>;

template <typename Topo>
std::enable_if_t<isOrMirrors<Topo, veksg::SCSceneTopo>> fill(Topo& topo, const Document& doc) {
    fillLists(lists(topo, "nodeLists3"), doc.nodeFaces);
    fillLists(lists(topo, "nodeLists4"), doc.nodeEdges);
    fillLists(lists(topo, "nodeLists6"), doc.nodeChildren);
    fillLists(lists(topo, "faceLists2"), doc.faceEdges);
    fillLists(lists(topo, "edgeLists2"), doc.edgeVerts);
}

// One small mesh, material, box, transform and polyline per part; two fonts.
template <typename Scene>
std::enable_if_t<isOrMirrors<Scene, veksg::SCScene>> fill(Scene& scene, const Document& doc) {
    auto& meshes = table<std::shared_ptr<veksg::Mesh>>(scene, "meshes");
    auto& meshMaterials = table<veksg::MMaterial>(scene, "meshMaterials");
    auto& polylines = table<std::shared_ptr<veksg::Polyline>>(scene, "polylines");
    auto& polylineMaterials = table<veksg::PLMaterial>(scene, "polylineMaterials");
    auto& boxes = table<veksg::BBox>(scene, "boxes");
    auto& transforms = table<veksg::Transform>(scene, "transforms");
    for (int p = 0; p < doc.parts; ++p) {
        auto mesh = std::make_shared<veksg::Mesh>();
        mesh->vn.resize(12);
        append(meshes, mesh);
        append(meshMaterials, veksg::MMaterial());
        auto polyline = std::make_shared<veksg::Polyline>();
        polyline->points.resize(4);
        append(polylines, polyline);
        append(polylineMaterials, veksg::PLMaterial());
        append(boxes, veksg::BBox());
        append(transforms, veksg::Transform());
    }
    auto& fonts = table<veksg::Font>(scene, "fonts");
    append(fonts, veksg::Font());
    append(fonts, veksg::Font());
}

// What a viewer holds between frames: per-node lists and values, a selection of every
// tenth part, appearance overrides and sets of nodes.
template <typename SceneRT>
std::enable_if_t<isOrMirrors<SceneRT, veksg::SCSceneRT>> fill(SceneRT& rt, const Document& doc) {
    fillLists(lists(rt, "nodeLists"), doc.nodePmis);
    auto& values = table<float>(rt, "nodeValues");
    auto& setA = at<veksg::Set<int>>(rt, "setA");
    auto& setB = at<veksg::Set<int>>(rt, "setB");
    auto& selection = at<decltype(veksg::SelectionRT::selection)>(rt, "selection.selection");
    auto& appearance = at<decltype(veksg::AppearanceRT::appearance)>(rt, "appearance.appearance");
    auto& materials1 = table<int>(rt, "transientMaterials.refs1");
    auto& materials2 = table<int>(rt, "transientMaterials.refs2");
    for (int p = 0; p < doc.parts; ++p) {
        append(values, 1.0f);
        if (p % 4 == 0) setA.insert(p);
        if (p % 16 == 0) setB.insert(p);
        if (p % partsPerView != 0) continue;
        selection[0].push_back(p);
        selection[1].push_back(p * facesPerPart);
        appearance[0].push_back(0xff0000ffu);
        append(materials1, p);
        append(materials2, p);
    }
}

// Two annotations per part with their boxes, the part's annotations per node and the node
// of each annotation.
template <typename Pmi>
std::enable_if_t<isOrMirrors<Pmi, veksg::SCPmi>> fill(Pmi& pmi, const Document& doc) {
    fillLists(lists(pmi, "relation1"), doc.nodePmis);
    auto& pmis = table<std::shared_ptr<veksg::PMI>>(pmi, "pmis");
    auto& boxes = table<veksg::BBox>(pmi, "pmiBoxes");
    auto& nodeOf = lists(pmi, "relation4");
    auto& ids = at<std::set<int>>(pmi, "idSet1");
    pmis.reserve(doc.lastPmi + 1);
    for (int p = 0; p < doc.parts; ++p)
        for (int a = 0; a < pmisPerPart; ++a) {
            append(pmis, std::shared_ptr<veksg::PMI>(std::make_shared<veksg::Text3D>(L"")));
            append(boxes, veksg::BBox());
            append(nodeOf, std::vector<int>{p});
            ids.insert(p * pmisPerPart + a);
        }
}

// ---- One body per operation, for the components and their raw mirrors alike -----------

template <typename T>
std::unique_ptr<T> make(const Document& doc) {
    auto subject = std::make_unique<T>();
    fill(*subject, doc);
    return subject;
}

template <typename T>
std::unique_ptr<T> makeResized(const Document& doc) {
    auto subject = make<T>(doc);
    subject->resize(resizerFor(doc));
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

// Bytes the first resize of a freshly filled component must write (the slots it adds) and
// read (the lists it dedupes).
template <typename C>
long resizeBytes(const Document& doc) {
    const auto raw = make<Raw<C>>(doc);
    const long before = raw->slotBytes();
    const long read = dedupedBytes(*raw);
    raw->resize(resizerFor(doc));
    return raw->slotBytes() - before + read;
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
        state, [&] { return make<T>(doc); }, [&](T& subject) { subject.resize(resizer); });
    setRates(state, doc, bytesOf(doc));
}

template <typename T>
void timeCleanup(benchmark::State& state) {
    const auto& doc = document(state);
    timeOnFresh(
        state, [&] { return makeResized<T>(doc); }, [](T& subject) { subject.cleanup(); });
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
    setRates(state, doc, dedupedBytes(*makeResized<Raw<veksg::SCSceneTopo>>(doc)));
}

// One plain read of every list that the second resize has to look at.
void RawReadPass(benchmark::State& state) {
    const auto& doc = document(state);
    const auto raw = makeResized<Raw<veksg::SCSceneTopo>>(doc);
    const auto sorted = raw->dedupedLists();
    for (auto _ : state) {
        long sum = 0;
        for (const auto* lists : sorted)
            for (const auto& list : *lists)
                for (int child : list)
                    sum += child;
        benchmark::DoNotOptimize(sum);
    }
    setRates(state, doc, dedupedBytes(*raw));
}

// ---- Batched meshes, refilled every frame ------------------------------------------------

using Placed = veksg::PairT<vekmath::Tuple<float, 16>, int>;

// The step that fills a frame (an instance of each part's mesh, with its links, flags and index
// list) and answers where the instances are stored; the tables are found once.
template <typename Batch>
auto frameFiller(Batch& batch, const Document& doc) {
    const std::array refs{&table<int>(batch, "refs1"), &table<int>(batch, "refs2"),
                          &table<int>(batch, "refs3"), &table<int>(batch, "refs4"),
                          &table<int>(batch, "refs5"), &table<int>(batch, "refs6")};
    return [&doc, refs, instances = &table<Placed>(batch, "instances"),
            lists = &lists(batch, "lists"), flags = &table<unsigned char>(batch, "flags")] {
        const Placed placed(vekmath::MatrixUtils::createIdentity(), 0);
        for (int p = 0; p < doc.parts; ++p) {
            append(*instances, placed);
            for (auto* links : refs)
                append(*links, p);
            append(*lists, doc.nodePmis[static_cast<size_t>(p)]);
            append(*flags, static_cast<unsigned char>(1));
        }
        return &*instances->begin();
    };
}

// `clear` keeps every table's storage, so a frame of the same size reallocates nothing: the
// counter stays 0.
template <typename Batch>
void timeFrames(benchmark::State& state) {
    const auto& doc = document(state);
    Batch batch;
    const auto fillFrame = frameFiller(batch, doc);
    const void* storage = fillFrame();
    long reallocations = 0;
    for (auto _ : state) {
        batch.clear();
        reallocations += fillFrame() != storage;
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
template <typename Component>
void addResizeAndCleanup(const std::string& name) {
    add(name + "Resize", &timeResize<Component>, &resizeBytes<Component>);
    add("Raw" + name + "Resize", &timeResize<Raw<Component>>, &resizeBytes<Component>);
    add(name + "Cleanup", &timeCleanup<Component>);
    add("Raw" + name + "Cleanup", &timeCleanup<Raw<Component>>);
}

template <typename Component>
void addCopies(const std::string& name) {
    add(name + "Copy", &timeCopy<Component>);
    add("Raw" + name + "Copy", &timeCopy<Raw<Component>>);
}

void registerAll() {
    add("TopoFirstResize", &timeResize<veksg::SCSceneTopo>, &resizeBytes<veksg::SCSceneTopo>);
    add("RawFirstResize", &timeResize<Raw<veksg::SCSceneTopo>>, &resizeBytes<veksg::SCSceneTopo>);
    add("TopoSecondResize", &TopoSecondResize);
    add("RawReadPass", &RawReadPass);
    addCopies<veksg::SCSceneTopo>("Topo");
    addResizeAndCleanup<veksg::SCScene>("Scene");
    addCopies<veksg::SCScene>("Scene");
    addResizeAndCleanup<veksg::SCSceneRT>("SceneRT");
    addResizeAndCleanup<veksg::SCPmi>("Pmi");
    add("MeshFrame", &timeFrames<veksg::MeshRT>);
    add("RawMeshFrame", &timeFrames<Raw<veksg::MeshRT>>);
    add("MemoryWrite", &MemoryWrite);
    add("MemoryRead", &MemoryRead);
}

} // namespace

int main(int argc, char** argv) {
    registerAll();
    return veksgbench::runBenchmarks(argc, argv);
}
