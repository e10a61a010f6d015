// Differential fuzzing of copies, assignments and cleanup of every component against a
// plain-vector model. Each field of a component is seen as a list of items: a number or
// string read back from what was stored, or the address of a shared object. Two instances
// are filled, copied, assigned, cleaned and refilled at random; after every step each must
// equal its model. So what is copied stays independent (refilling one leaves the other as
// it was), what is shared stays shared (the same addresses, with owner counts that match the
// holders exactly), and cleanup empties what it documents and keeps the rest.
#include <cstdint>
#include <cwchar>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "FuzzCheck.h"
#include "vek2d/SCScene2D.h"
#include "veksg/veksg.h"

// Which shape a member has, told apart by overloads used only inside decltype (outside the
// unnamed namespace, so that declarations without bodies are fine).
namespace shapes {
enum class Kind { sequence, set, map, single };

template <typename V>
std::integral_constant<Kind, Kind::sequence> kindOf(const veksg::Container<int, V>*);
template <typename V>
std::integral_constant<Kind, Kind::sequence> kindOf(const std::vector<V>*);
std::integral_constant<Kind, Kind::set> kindOf(const std::set<int>*);
std::integral_constant<Kind, Kind::set> kindOf(const veksg::Set<int>*);
template <typename V>
std::integral_constant<Kind, Kind::map> kindOf(const std::map<int, V>*);
std::integral_constant<Kind, Kind::single> kindOf(...);

template <typename V>
V valueOf(const veksg::Container<int, V>*);
template <typename V>
V valueOf(const std::vector<V>*);

} // namespace shapes

namespace {

using namespace veksg;
using shapes::Kind;
using Item = std::int64_t;
using Items = std::vector<Item>;

// ---- Stored values: how a token goes in and what is read back -------------------------------

// Host objects behind the untyped and abstract shared pointers.
struct Activator : IStateActivator {
    void activate(const std::shared_ptr<IState>&) override {}
};
struct Executor : IStateExecutor {
    void execute(const std::shared_ptr<IState>&) override {}
};
struct Predicate : IPairFunctor {
    bool apply(const int&) const override { return true; }
};

template <typename T>
std::shared_ptr<T> fresh(Item t) {
    if constexpr (std::is_same_v<T, void>) {
        return std::make_shared<Item>(t);
    } else if constexpr (std::is_same_v<T, PMI>) {
        return std::make_shared<TessPMI>(PMI::TEXT3D);
    } else if constexpr (std::is_same_v<T, IStateActivator>) {
        return std::make_shared<Activator>();
    } else if constexpr (std::is_same_v<T, IStateExecutor>) {
        return std::make_shared<Executor>();
    } else if constexpr (std::is_same_v<T, IPairFunctor>) {
        return std::make_shared<Predicate>();
    } else if constexpr (std::is_same_v<T, StringValue>) {
        return std::make_shared<StringValue>(L"key", nullptr);
    } else if constexpr (std::is_same_v<T, Text3D> || std::is_same_v<T, Text3DLeader>) {
        return std::make_shared<T>(L"name");
    } else if constexpr (std::is_same_v<T, Mesh>) {
        auto mesh = std::make_shared<Mesh>();
        mesh->vn.push_back(VN{});
        mesh->vnc.push_back(VNC{});
        mesh->vnt.push_back(VNT{});
        return mesh;
    } else if constexpr (std::is_same_v<T, Polyline>) {
        auto polyline = std::make_shared<Polyline>();
        polyline->points.emplace_back();
        polyline->values.push_back(static_cast<int>(t));
        return polyline;
    } else {
        return std::make_shared<T>();
    }
}

// Each record is stamped and read through one of its fields.
int& tag(Node& r) {
    return r.id;
}
int& tag(Face& r) {
    return r.id;
}
int& tag(Surface& r) {
    return r.id;
}
int& tag(Edge& r) {
    return r.id;
}
int& tag(Curve& r) {
    return r.id;
}
int& tag(Vertex& r) {
    return r.id;
}
Point3& tag(BBox& r) {
    return r.min;
}
Point3& tag(OBBox& r) {
    return r.center;
}
vekmath::Tuple<float, 16>& tag(Transform& r) {
    return r.matrix;
}
float& tag(MMaterial& r) {
    return r.shininess;
}
float& tag(PLMaterial& r) {
    return r.width;
}
int& tag(Font& r) {
    return r.size;
}
int& tag(Text& r) {
    return r.font;
}
int& tag(PrimitiveInfo& r) {
    return r.id;
}
float& tag(Hole& r) {
    return r.size;
}
int& tag(ExtFile& r) {
    return r.id; // the path stays empty: nothing on disk is ever named
}
int& tag(HoleGroupEntry& r) {
    return r.hole;
}
int& tag(HoleRecord& r) {
    return r.kind;
}
int& tag(DraftRange& r) {
    return r.first;
}
int& tag(PairT<vekmath::Tuple<float, 16>, int>& r) {
    return r.second;
}
std::wstring& tag(vek2d::Sheet& r) {
    return r.name;
}
std::wstring& tag(vek2d::View& r) {
    return r.name;
}
int& tag(vek2d::Entity& r) {
    return r.id;
}
Color4& tag(vek2d::EntityColor& r) {
    return r.color;
}
std::vector<std::vector<Point3>>& tag(vek2d::HatchPattern& r) {
    return r.loops;
}
int& tag(vek2d::IndicesInfo& r) {
    return r.count;
}
int& tag(vek2d::Ellipse& r) {
    return r.param0;
}

template <typename T>
std::enable_if_t<std::is_arithmetic_v<T>> assign(T& x, Item t);
void assign(std::wstring& x, Item t);
template <int N>
void assign(vekmath::Tuple<float, N>& x, Item t);
template <typename T>
void assign(std::vector<T>& x, Item t);
template <typename T>
void assign(std::shared_ptr<T>& x, Item t);
template <typename R>
auto assign(R& r, Item t) -> decltype(tag(r), void());

template <typename T>
std::enable_if_t<std::is_arithmetic_v<T>, Item> id(const T& x);
Item id(const std::wstring& x);
template <int N>
Item id(const vekmath::Tuple<float, N>& x);
template <typename T>
Item id(const std::vector<T>& x);
template <typename T>
Item id(const std::shared_ptr<T>& x);
template <typename R>
auto id(const R& r) -> decltype(tag(const_cast<R&>(r)), Item());

template <typename T>
std::enable_if_t<std::is_arithmetic_v<T>> assign(T& x, Item t) {
    if constexpr (std::is_same_v<T, bool>)
        x = (t & 1) != 0;
    else
        x = static_cast<T>(t);
}
void assign(std::wstring& x, Item t) {
    x = std::to_wstring(t);
}
template <int N>
void assign(vekmath::Tuple<float, N>& x, Item t) {
    x[0] = static_cast<float>(t);
}
template <typename T>
void assign(std::vector<T>& x, Item t) {
    x.assign(1, T{});
    assign(x[0], t);
}
template <typename T>
void assign(std::shared_ptr<T>& x, Item t) {
    x = fresh<T>(t);
}
template <typename R>
auto assign(R& r, Item t) -> decltype(tag(r), void()) {
    assign(tag(r), t);
}

template <typename T>
std::enable_if_t<std::is_arithmetic_v<T>, Item> id(const T& x) {
    return static_cast<Item>(x);
}
Item id(const std::wstring& x) {
    return x.empty() ? -1 : std::wcstol(x.c_str(), nullptr, 10);
}
template <int N>
Item id(const vekmath::Tuple<float, N>& x) {
    return static_cast<Item>(x[0]);
}
template <typename T>
Item id(const std::vector<T>& x) {
    return x.empty() ? -1 : id(static_cast<const T&>(x[0]));
}
template <typename T>
Item id(const std::shared_ptr<T>& x) {
    return static_cast<Item>(reinterpret_cast<std::uintptr_t>(x.get()));
}
template <typename R>
auto id(const R& r) -> decltype(tag(const_cast<R&>(r)), Item()) {
    return id(tag(const_cast<R&>(r)));
}

// Owner counts: every shared object seen, with its use count and how often it was seen.
using Owners = std::map<const void*, std::pair<long, long>>;

template <typename T>
void note(const T&, Owners&) {
}
template <typename T>
void note(const std::shared_ptr<T>& p, Owners& owners) {
    if (!p) return;
    auto& seen = owners[p.get()];
    seen.first = p.use_count();
    ++seen.second;
}

// ---- Fields: a member seen as a sequence, an ordered set, a map or a single value -----------

template <typename V>
void append(Container<int, V>& c, const V& v) {
    c.insert(v);
}
template <typename V>
void append(std::vector<V>& c, const V& v) {
    c.push_back(v);
}
template <typename V>
void store(Container<int, V>& c, std::size_t k, const V& v) {
    c.setValue(static_cast<int>(k), v);
}
template <typename V>
void store(std::vector<V>& c, std::size_t k, const V& v) {
    c[k] = v;
}

template <typename C>
struct Field {
    const char* name;
    Kind kind;
    bool cleanup;  // reset to its default by cleanup()
    bool clearAll; // reset to its default by clearAll()
    /// Stores a token; returns what the model takes in: the item, or (key, item) for maps.
    std::function<Items(C&, Item)> put;
    /// Overwrites element k of a sequence; returns the new item.
    std::function<Item(C&, std::size_t, Item)> overwrite;
    std::function<Items(C&)> read;
    std::function<void(C&, Owners&)> owners;
};

template <typename C, typename Get>
Field<C> field(const char* name, bool cleanup, bool clearAll, Get get) {
    using M = std::remove_reference_t<decltype(get(std::declval<C&>()))>;
    constexpr Kind kind = decltype(shapes::kindOf(static_cast<M*>(nullptr)))::value;
    Field<C> f{name, kind, cleanup, clearAll, {}, {}, {}, {}};
    if constexpr (kind == Kind::sequence) {
        using V = decltype(shapes::valueOf(static_cast<M*>(nullptr)));
        f.put = [get](C& c, Item t) {
            V v{};
            assign(v, t);
            append(get(c), v);
            return Items{id(v)};
        };
        f.overwrite = [get](C& c, std::size_t k, Item t) {
            V v{};
            assign(v, t);
            store(get(c), k, v);
            return id(v);
        };
        f.read = [get](C& c) {
            Items out;
            for (const auto& v : get(c))
                out.push_back(id(static_cast<const V&>(v)));
            return out;
        };
        f.owners = [get](C& c, Owners& o) {
            for (const auto& v : get(c))
                note(v, o);
        };
    } else if constexpr (kind == Kind::set) {
        f.put = [get](C& c, Item t) {
            get(c).insert(static_cast<int>(t % 16));
            return Items{t % 16};
        };
        f.read = [get](C& c) {
            Items out;
            for (int v : get(c))
                out.push_back(v);
            return out;
        };
        f.owners = [](C&, Owners&) {};
    } else if constexpr (kind == Kind::map) {
        f.put = [get](C& c, Item t) {
            auto& slot = get(c)[static_cast<int>(t % 8)];
            assign(slot, t);
            return Items{t % 8, id(slot)};
        };
        f.read = [get](C& c) {
            Items out;
            for (const auto& entry : get(c)) {
                out.push_back(entry.first);
                out.push_back(id(entry.second));
            }
            return out;
        };
        f.owners = [get](C& c, Owners& o) {
            for (const auto& entry : get(c))
                note(entry.second, o);
        };
    } else {
        f.put = [get](C& c, Item t) {
            assign(get(c), t);
            return Items{id(get(c))};
        };
        f.read = [get](C& c) { return Items{id(get(c))}; };
        f.owners = [get](C& c, Owners& o) { note(get(c), o); };
    }
    return f;
}

#define KEEP(member)                                                                               \
    field<C>(                                                                                      \
        #member, false, false, [](C & c) -> auto& { return c.member; })
#define CLEANED(member)                                                                            \
    field<C>(                                                                                      \
        #member, true, false, [](C & c) -> auto& { return c.member; })
#define CLEARED(member)                                                                            \
    field<C>(                                                                                      \
        #member, false, true, [](C & c) -> auto& { return c.member; })

// ---- The model -------------------------------------------------------------------------------

using State = std::vector<Items>;

template <typename C>
struct Layout {
    std::vector<Field<C>> fields;
    void (*clearAll)(C&) = nullptr;
};

template <typename C>
State read(const Layout<C>& layout, C& c) {
    State s;
    for (const auto& f : layout.fields)
        s.push_back(f.read(c));
    return s;
}

// What the model does with a stored item, written out for each kind of field.
void modelPut(Kind kind, Items& field, const Items& put) {
    switch (kind) {
    case Kind::sequence:
        field.push_back(put[0]);
        break;
    case Kind::set: {
        std::size_t at = 0;
        while (at < field.size() && field[at] < put[0])
            ++at;
        if (at == field.size() || field[at] != put[0])
            field.insert(field.begin() + static_cast<long>(at), put[0]);
        break;
    }
    case Kind::map: {
        std::size_t at = 0;
        while (at < field.size() && field[at] < put[0])
            at += 2;
        if (at < field.size() && field[at] == put[0])
            field[at + 1] = put[1];
        else
            field.insert(field.begin() + static_cast<long>(at), put.begin(), put.end());
        break;
    }
    case Kind::single:
        field = put;
        break;
    }
}

template <typename C>
class Pair {
public:
    // The defaults themselves are the unit tests' business. A new object is its own model:
    // the state store allocates its containers, whose addresses differ per object.
    explicit Pair(const Layout<C>& layout) : layout(layout), defaults(readNew(layout)) {
        for (std::size_t i = 0; i < 2; ++i)
            models[i] = read(layout, *objects[i]);
    }

    void step(FuzzedDataProvider& in) {
        const std::size_t self = in.ConsumeBool() ? 1 : 0;
        const std::size_t other = 1 - self;
        C& c = *objects[self];
        State& m = models[self];
        switch (in.ConsumeIntegralInRange<int>(0, 9)) {
        case 0:
        case 1:
        case 2: {
            const auto f = in.ConsumeIntegralInRange<std::size_t>(0, layout.fields.size() - 1);
            const Field<C>& fld = layout.fields[f];
            modelPut(fld.kind, m[f], fld.put(c, in.ConsumeIntegralInRange<Item>(0, 250)));
            break;
        }
        case 3: {
            const auto f = in.ConsumeIntegralInRange<std::size_t>(0, layout.fields.size() - 1);
            const Field<C>& fld = layout.fields[f];
            if (fld.kind != Kind::sequence || m[f].empty()) break;
            const auto k = in.ConsumeIntegralInRange<std::size_t>(0, m[f].size() - 1);
            m[f][k] = fld.overwrite(c, k, in.ConsumeIntegralInRange<Item>(0, 250));
            break;
        }
        case 4:
            objects[other] = std::make_unique<C>(c);
            models[other] = m;
            break;
        case 5:
            *objects[other] = c;
            models[other] = m;
            break;
        case 6: {
            const C& same = c;
            c = same; // cppcheck-suppress selfAssignment
            break;
        }
        case 7:
            cleanup(c, m);
            break;
        case 8:
            if (layout.clearAll != nullptr) {
                layout.clearAll(c);
                for (std::size_t f = 0; f < m.size(); ++f)
                    if (layout.fields[f].clearAll) m[f] = defaults[f];
            }
            break;
        default:
            objects[self] = std::make_unique<C>();
            m = read(layout, *objects[self]);
            break;
        }
        check();
    }

private:
    static State readNew(const Layout<C>& layout) {
        C prototype;
        return read(layout, prototype);
    }

    void cleanup(C& c, State& m) {
        // The scene empties its shared meshes and polylines for every other holder too.
        std::vector<std::shared_ptr<Mesh>> meshes;
        std::vector<std::shared_ptr<Polyline>> polylines;
        if constexpr (std::is_same_v<C, SCScene>) {
            meshes.assign(c.meshes.begin(), c.meshes.end());
            polylines.assign(c.polylines.begin(), c.polylines.end());
        }
        const short code = c.type();
        c.cleanup();
        FUZZ_CHECK(c.type() == code);
        for (std::size_t f = 0; f < m.size(); ++f)
            if (layout.fields[f].cleanup) m[f] = defaults[f];
        for (const auto& mesh : meshes)
            FUZZ_CHECK(!mesh || (mesh->vn.empty() && mesh->vnt.empty() && mesh->vnc.empty()));
        for (const auto& polyline : polylines)
            FUZZ_CHECK(!polyline || (polyline->points.empty() && polyline->values.empty()));
    }

    void check() {
        Owners owners;
        for (std::size_t i = 0; i < 2; ++i) {
            C& c = *objects[i];
            FUZZ_CHECK(c.type() == objects[1 - i]->type());
            for (std::size_t f = 0; f < layout.fields.size(); ++f) {
                const Items got = layout.fields[f].read(c);
                if (got != models[i][f]) {
                    std::fprintf(stderr, "field %s of object %zu\n", layout.fields[f].name, i);
                    FUZZ_CHECK(got == models[i][f]);
                }
                layout.fields[f].owners(c, owners);
            }
        }
        // Nobody but the two objects holds a shared object: copies add exactly one owner per
        // holding slot, and nothing released keeps an owner behind.
        for (const auto& seen : owners)
            FUZZ_CHECK(seen.second.first == seen.second.second);
    }

    const Layout<C>& layout;
    State defaults;
    std::unique_ptr<C> objects[2] = {std::make_unique<C>(), std::make_unique<C>()};
    State models[2];
};

// ---- The components ----------------------------------------------------------------------------

template <typename C>
Layout<C> layoutOf();

template <>
Layout<SCScene> layoutOf() {
    using C = SCScene;
    return {{CLEANED(meshes), CLEANED(meshMaterials), CLEANED(polylines),
             CLEANED(polylineMaterials), CLEANED(boxes), CLEANED(transforms), CLEANED(points),
             CLEANED(textures), CLEANED(links6a), CLEANED(links7), KEEP(links8), CLEANED(links6b),
             CLEANED(fonts), CLEANED(hierarchy), CLEANED(texts), CLEANED(textLinksA),
             CLEANED(textLinksB)}};
}

template <>
Layout<SCSceneTopo> layoutOf() {
    using C = SCSceneTopo;
    return {
        {KEEP(nodes),       KEEP(faces),      KEEP(surfaces),   KEEP(edges),      KEEP(curves),
         KEEP(vertices),    KEEP(nodeLists1), KEEP(nodeLists2), KEEP(nodeLists3), KEEP(nodeLists4),
         KEEP(nodeLists5),  KEEP(nodeLists6), KEEP(nodeLists7), KEEP(nodeRefs1),  KEEP(nodeRefs2),
         KEEP(nodeRefs3),   KEEP(nodeRefs4),  KEEP(nodeLists8), KEEP(nodeLists9), KEEP(nodeLists10),
         KEEP(nodeLists11), KEEP(faceLists1), KEEP(faceLists2), KEEP(faceLists3), KEEP(faceLists4),
         KEEP(faceRefs1),   KEEP(faceRefs2),  KEEP(edgeLists1), KEEP(edgeLists2), KEEP(edgeLists3),
         KEEP(edgeLists4),  KEEP(edgeRefs1),  KEEP(refs15a),    KEEP(lists15a),   KEEP(lists15b),
         KEEP(refs15b),     KEEP(refs13a),    KEEP(lists13),    KEEP(refs13b),    KEEP(refs14a),
         KEEP(lists14),     KEEP(refs14b),    KEEP(refs14c),    KEEP(namesByKey), KEEP(nodeFlags),
         KEEP(topoKey),     KEEP(topoCount)}};
}

template <>
Layout<SCSceneRes> layoutOf() {
    using C = SCSceneRes;
    return {{KEEP(meshMaterials), KEEP(polylineMaterials), KEEP(textures),    KEEP(boxes),
             KEEP(orientedBoxes), KEEP(transforms),        KEEP(transformsB), KEEP(vertexInfos),
             KEEP(indexInfos),    KEEP(indexLinks),        KEEP(vertexLists), KEEP(primitivesA),
             KEEP(primALinks1),   KEEP(indexLists1),       KEEP(primALinks2), KEEP(primALinks3),
             KEEP(primitivesB),   KEEP(primBLinks1),       KEEP(indexLists2), KEEP(primBLinks2),
             KEEP(primitivesC),   KEEP(primCLinks1),       KEEP(indexLists3), KEEP(primCLinks2),
             KEEP(fonts),         KEEP(fontLists),         KEEP(texts),       KEEP(textLinksA),
             KEEP(textLinksB)}};
}

template <>
Layout<SCSceneRT> layoutOf() {
    using C = SCSceneRT;
    // The batched buffers survive cleanup; everything transient goes.
    return {{KEEP(meshes.instances),
             KEEP(meshes.refs1),
             KEEP(meshes.lists),
             KEEP(meshes.flags),
             KEEP(meshes.dirty),
             KEEP(polylines.refs4),
             KEEP(polylines.dirty),
             KEEP(vertices.lists),
             KEEP(vertices.refs6),
             KEEP(texts.refs3),
             KEEP(texts.dirty),
             CLEANED(visibility.sets[0]),
             CLEANED(visibility.sets[7]),
             CLEANED(visibility.functors[0].functors),
             CLEANED(visibility.functors[3].functors),
             CLEANED(selection.selection[0]),
             CLEANED(selection.selection[10]),
             CLEANED(nodeLists),
             CLEANED(nodeValues),
             CLEANED(setA),
             CLEANED(setB),
             CLEANED(appearance.appearance[0]),
             CLEANED(appearance.appearance[3]),
             CLEANED(transientMaterials.refs1),
             CLEANED(transientMaterials.refs5),
             CLEANED(transientMaterials.count)}};
}

template <>
Layout<SCTempGraphics> layoutOf() {
    using C = SCTempGraphics;
    return {{CLEANED(texts3d), CLEANED(leaders), CLEANED(tempShared1), CLEANED(tempShared2),
             CLEANED(measures), CLEANED(tempValues), CLEANED(tempShared3)}};
}

template <>
Layout<SCPmi> layoutOf() {
    using C = SCPmi;
    return {{CLEANED(pmis),       CLEANED(pmiList1),   CLEANED(pmiList2),      CLEANED(views),
             CLEANED(viewSets),   CLEANED(sections),   CLEANED(pmiBoxes),      CLEANED(relation1),
             CLEANED(relation2),  CLEANED(relation3),  CLEANED(relation4),     CLEANED(map1),
             CLEANED(relation5),  CLEANED(map2),       CLEANED(relation6),     CLEANED(relation7),
             CLEANED(map3),       CLEANED(relation8),  CLEANED(relation9),     CLEANED(map4),
             CLEANED(relation10), CLEANED(map5),       CLEANED(relation11),    CLEANED(relation12),
             CLEANED(relation13), CLEANED(relation14), CLEANED(pmiAttributes), CLEANED(map6),
             CLEANED(pmiObject),  CLEANED(idSet1),     CLEANED(idSet2)}};
}

template <>
Layout<SCView> layoutOf() {
    using C = SCView;
    return {{KEEP(orientations), KEEP(currentView), KEEP(previousView), KEEP(viewMode),
             CLEANED(viewObject)}};
}

template <>
Layout<SCStates> layoutOf() {
    using C = SCStates;
    return {{KEEP(firstStates), KEEP(secondStates), KEEP(typeStates), KEEP(firstHook),
             KEEP(secondHook), KEEP(firstSetting), KEEP(secondSetting), KEEP(executors)}};
}

template <>
Layout<SCAttributes> layoutOf() {
    using C = SCAttributes;
    return {{KEEP(attributes), KEEP(attributeIndices), KEEP(flags), KEEP(userValue)}};
}

template <>
Layout<SCExtFile> layoutOf() {
    using C = SCExtFile;
    return {{KEEP(files), KEEP(fileIds), KEEP(fileIndices), CLEANED(flags),
             KEEP(deleteFilesOnDestroy), KEEP(flagA), KEEP(sharedObject), KEEP(flagB),
             KEEP(names)}};
}

template <>
Layout<SCInfo> layoutOf() {
    using C = SCInfo;
    return {{KEEP(info0), KEEP(info1), KEEP(info2), KEEP(info3), KEEP(info4), KEEP(info5),
             KEEP(info6), KEEP(tolerance), KEEP(info8), KEEP(info9), KEEP(filePath)}};
}

template <>
Layout<SCLayer> layoutOf() {
    using C = SCLayer;
    return {{KEEP(layer)}};
}

template <>
Layout<SCAnimation> layoutOf() {
    using C = SCAnimation;
    return {{KEEP(transforms), KEEP(keys)}};
}

template <>
Layout<SCThicknessAnalysis> layoutOf() {
    using C = SCThicknessAnalysis;
    return {{CLEANED(computed),    CLEANED(index0),    CLEANED(index1),  CLEANED(index2),
             CLEANED(value0),      CLEANED(value1),    CLEANED(value2),  CLEANED(value3),
             CLEANED(value4),      KEEP(settingIndex), KEEP(setting0),   KEEP(setting1),
             KEEP(options),        KEEP(point0),       KEEP(point1),     KEEP(point2),
             KEEP(settingFlag),    CLEANED(result0),   CLEANED(result1), CLEANED(result2),
             CLEANED(thicknesses), CLEANED(ids)}};
}

template <>
Layout<SCDraftAngleAnalysis> layoutOf() {
    using C = SCDraftAngleAnalysis;
    return {{CLEARED(anglesA),  KEEP(anglesB),      KEEP(rangesA),      CLEARED(rangesB),
             CLEARED(groups),   KEEP(pointGroups),  CLEARED(pointsA),   CLEARED(codes),
             CLEARED(objects),  CLEARED(matrices),  CLEARED(pointsB),   KEEP(shared0),
             KEEP(shared1),     KEEP(settingIndex), KEEP(setting0),     KEEP(setting1),
             KEEP(options),     KEEP(point0),       KEEP(point1),       KEEP(point2),
             KEEP(settingFlag), CLEARED(computed),  KEEP(settingFlag2), CLEARED(currentIndex),
             KEEP(minAngle),    KEEP(maxAngle)},
            [](C& c) { c.clearAll(); }};
}

template <>
Layout<SCFeatures> layoutOf() {
    using C = SCFeatures;
    return {{KEEP(holes), KEEP(nodeFeatures)}};
}

template <>
Layout<SCHoleInfo> layoutOf() {
    using C = SCHoleInfo;
    return {{KEEP(holeGroups0), KEEP(holeGroups1), KEEP(holeRecords)}};
}

template <>
Layout<SCComprae> layoutOf() {
    using C = SCComprae;
    // The two files are private and set together.
    Field<C> files{"files", Kind::single, false, false, {}, {}, {}, {}};
    files.put = [](C& c, Item t) {
        c.setFiles(std::to_wstring(t).c_str(), std::to_wstring(t + 1).c_str());
        return Items{t, t + 1};
    };
    files.read = [](C& c) {
        return Items{id(std::wstring(c.refFile())), id(std::wstring(c.cmpFile()))};
    };
    files.owners = [](C&, Owners&) {};
    return {{files}};
}

template <>
Layout<SCHoops> layoutOf() {
    using C = SCHoops;
    return {{KEEP(names0), KEEP(names1), KEEP(names2)}};
}

template <>
Layout<vek2d::SCScene2D> layoutOf() {
    using C = vek2d::SCScene2D;
    // clearAll is kept empty on purpose: it resets nothing.
    return {{KEEP(sheets),    KEEP(views),    KEEP(values),  KEEP(names),   KEEP(entities),
             KEEP(entities2), KEEP(colors),   KEEP(hatches), KEEP(indices), KEEP(texts),
             KEEP(fonts),     KEEP(ellipses), KEEP(lists0),  KEEP(lists1),  KEEP(lists2),
             KEEP(lists3),    KEEP(lists4),   KEEP(lists5),  KEEP(lists6),  KEEP(lists7),
             KEEP(map0),      KEEP(map1),     KEEP(map2),    KEEP(map3),    KEEP(map4),
             KEEP(map5),      KEEP(map6),     KEEP(map7),    KEEP(map8),    KEEP(map9),
             KEEP(map10),     KEEP(current),  KEEP(color),   KEEP(scale)},
            [](C& c) { c.clearAll(); }};
}

template <typename C>
void run(FuzzedDataProvider& in) {
    static const Layout<C> layout = layoutOf<C>();
    Pair<C> pair(layout);
    while (in.remaining_bytes() > 0)
        pair.step(in);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    using Runner = void (*)(FuzzedDataProvider&);
    static const Runner runners[] = {
        run<SCScene>,
        run<SCSceneRT>,
        run<SCPmi>,
        run<SCExtFile>,
        run<SCAttributes>,
        run<SCLayer>,
        run<SCTempGraphics>,
        run<SCInfo>,
        run<SCView>,
        run<SCAnimation>,
        run<SCSceneTopo>,
        run<SCSceneRes>,
        run<SCFeatures>,
        run<vek2d::SCScene2D>,
        run<SCHoops>,
        run<SCComprae>,
        run<SCStates>,
        run<SCThicknessAnalysis>,
        run<SCDraftAngleAnalysis>,
        run<SCHoleInfo>,
    };
    runners[in.ConsumeIntegralInRange<std::size_t>(0, std::size(runners) - 1)](in);
    return 0;
}
