#pragma once

// Compares what a snapshot read back with what was written: every table of every component
// through the catalogue, records field by field from a list of its own (not the writer's, so
// that a field the writer forgets shows), and the sharing of objects: two tables that held
// one object must hold one object again. Host-owned objects must come back empty.
#include <cstring>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include "vek2d/SCScene2D.h"
#include "veksg/veksg.h"

namespace veksg::test {

// The fields of each record, in a list separate from the snapshot writer's.
#define VEKSG_FIELDS(Type, ...)                                                                    \
    inline auto fieldsOf(const Type& v) {                                                          \
        return std::tie(__VA_ARGS__);                                                              \
    }
VEKSG_FIELDS(BBox, v.min, v.max, v.valid)
VEKSG_FIELDS(OBBox, v.center, v.axisX, v.axisY, v.axisZ, v.valid)
VEKSG_FIELDS(Transform, v.matrix, v.valid)
VEKSG_FIELDS(MMaterial, v.ambient, v.diffuse, v.specular, v.emission, v.shininess, v.valid)
VEKSG_FIELDS(PLMaterial, v.color, v.width, v.valid)
VEKSG_FIELDS(Texture, v.path)
inline auto fieldsOf(const Font& v) {
    return std::make_tuple(v.size, v.style, v.attributes, std::wstring(v.name()),
                           std::wstring(v.path()));
}
VEKSG_FIELDS(Text, v.matrix, v.position, v.font, v.color, v.attributes, v.text)
inline auto fieldsOf(const Node& v) {
    return std::make_tuple(v.id, v.flag, v.ref, std::wstring(v.name()));
}
VEKSG_FIELDS(Face, v.id, v.flag, v.pointA, v.pointB)
VEKSG_FIELDS(Edge, v.id, v.ref, v.pointA, v.pointB, v.kind)
VEKSG_FIELDS(Vertex, v.id, v.position)
VEKSG_FIELDS(Surface, v.id)
VEKSG_FIELDS(Curve, v.id)
VEKSG_FIELDS(PrimitiveInfo, v.id, v.first, v.count, v.mode, v.color)
VEKSG_FIELDS(Mesh, v.vn, v.vnc, v.vnt)
VEKSG_FIELDS(VN, v.vertex, v.normal)
VEKSG_FIELDS(VNC, v.vertex, v.normal, v.color)
VEKSG_FIELDS(VNT, v.vertex, v.normal, v.texture)
VEKSG_FIELDS(Polyline, v.points, v.values)
VEKSG_FIELDS(Layer, v.name)
VEKSG_FIELDS(ExtFile, v.path, v.id)
VEKSG_FIELDS(Hole, v.origin, v.axis, v.size)
VEKSG_FIELDS(HoleGroupEntry, v.hole, v.face, v.diameter, v.depth)
VEKSG_FIELDS(HoleRecord, v.origin, v.axis, v.kind, v.face, v.diameter, v.depth, v.name)
VEKSG_FIELDS(DraftRange, v.from, v.to, v.first, v.count)
template <typename A, typename B>
auto fieldsOf(const PairT<A, B>& v) {
    return std::tie(v.first, v.second);
}
VEKSG_FIELDS(TriadInfo, v.kind, v.origin, v.options, v.pointLists, v.matrixLists, v.points)
VEKSG_FIELDS(StateContainer, v.states)
VEKSG_FIELDS(StateTypeContainer, v.containers)
VEKSG_FIELDS(vek2d::Ellipse, v.center, v.axis0, v.axis1, v.param0, v.param1)
VEKSG_FIELDS(vek2d::EntityColor, v.color)
VEKSG_FIELDS(vek2d::Entity, v.points, v.id, v.scale, v.value0, v.value1, v.flag, v.value2, v.style,
             v.points2, v.matrix)
VEKSG_FIELDS(vek2d::HatchPattern, v.loops)
VEKSG_FIELDS(vek2d::View, v.name, v.point0, v.point1, v.flag)
VEKSG_FIELDS(vek2d::Sheet, v.flag0, v.name, v.tolerance, v.point0, v.point1, v.flag1, v.color)

inline auto pmiBase(const PMI& v) {
    return std::make_tuple(v.id, std::wstring(v.name()), v.pmiType);
}
inline auto fieldsOf(const TessPMI& v) {
    return pmiBase(v);
}
inline auto fieldsOf(const ViewSet& v) {
    return pmiBase(v);
}
inline auto fieldsOf(const Text3D& v) {
    return std::tuple_cat(pmiBase(v), std::tie(v.text, v.position, v.secondPoint, v.matrix));
}
inline auto fieldsOf(const Text3DLeader& v) {
    return std::tuple_cat(pmiBase(v), std::tie(v.text3d, v.leader));
}
inline auto fieldsOf(const Measure& v) {
    return std::tuple_cat(pmiBase(v),
                          std::tie(v.point1, v.point2, v.point3, v.value, v.text3d, v.leader,
                                   v.measureSetting, v.measureText, v.point4));
}
inline auto fieldsOf(const Section& v) {
    return std::tuple_cat(pmiBase(v), std::tie(v.origin, v.normal, v.sectionSetting));
}
inline auto fieldsOf(const View& v) {
    return std::tuple_cat(pmiBase(v),
                          std::tie(v.viewIndex, v.position, v.target, v.up, v.viewFlag, v.text1,
                                   v.text2, v.text3, v.text4, v.viewValue, v.list1, v.list2,
                                   v.list3, v.list4, v.floatList, v.list5, v.transforms, v.points,
                                   v.list6, v.colorList, v.viewEnd));
}
VEKSG_FIELDS(CameraState, v.cmdId, v.seqId, v.position, v.target, v.up)
VEKSG_FIELDS(AppearanceState, v.cmdId, v.seqId, v.ids, v.colors, v.transparencies)
VEKSG_FIELDS(TransformState, v.cmdId, v.seqId, v.ids, v.transforms, v.mode, v.triad)
VEKSG_FIELDS(VisibilityState, v.cmdId, v.seqId, v.values, v.ids)
VEKSG_FIELDS(SectionState, v.cmdId, v.seqId, v.sections, v.mode, v.ids, v.triad, v.flags)
VEKSG_FIELDS(ClipNodeState, v.cmdId, v.seqId, v.flags, v.flag)

#undef VEKSG_FIELDS

class SameTables {
public:
    /// Every difference found, one line each; empty when the two agree.
    std::vector<std::string> problems;

    template <typename C>
    void components(const C& written, const C& read, const std::string& name) {
        forEachTable(written, [&](const TableInfo& info, const auto& member) {
            forEachTable(read, [&](const TableInfo& other, const auto& copy) {
                if constexpr (std::is_same_v<decltype(member), decltype(copy)>)
                    if (std::strcmp(info.name, other.name) == 0)
                        table(member, copy, name + "." + info.name);
            });
        });
    }

    template <typename T>
    void table(const T& a, const T& b, const std::string& where) {
        place = where;
        (*this)(a, b);
    }

    template <typename T>
    void operator()(const T& a, const T& b) {
        if constexpr (hasTables<T>) {
            components(a, b, place);
        } else if constexpr (std::is_floating_point_v<T>) {
            expect(std::memcmp(&a, &b, sizeof a) == 0, "a number differs");
        } else if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T> ||
                             std::is_same_v<T, std::wstring>) {
            expect(a == b, "a value differs");
        } else if constexpr (std::is_array_v<T>) {
            for (std::size_t i = 0; i < std::extent_v<T>; ++i)
                (*this)(a[i], b[i]);
        } else if constexpr (std::is_same_v<T, std::shared_ptr<void>> ||
                             std::is_same_v<T, std::shared_ptr<IStateActivator>>) {
            expect(!b, "a host object came back");
        } else if constexpr (std::is_same_v<T, PairFunctorHelper>) {
            expect(b.functors.empty(), "a host predicate came back");
        } else if constexpr (std::is_same_v<T, std::map<int, std::shared_ptr<IStateExecutor>>>) {
            expect(b.empty(), "a host executor came back");
        } else if constexpr (isShared<T>::value) {
            shared(a, b);
        } else if constexpr (isPair<T>::value) {
            (*this)(a.first, b.first);
            (*this)(a.second, b.second);
        } else if constexpr (isTuple<T>::value) {
            std::apply([&](const auto&... x) { tupleOf(b, x...); }, a);
        } else if constexpr (isRange<T>::value) {
            range(a, b);
        } else if constexpr (std::is_same_v<T, VertexInfo> || std::is_same_v<T, IndexInfo> ||
                             std::is_same_v<T, vek2d::IndicesInfo>) {
            buffer(a, b);
        } else {
            (*this)(fieldsOf(a), fieldsOf(b));
        }
    }

    /// Two components of one class, SCComprae's paths included.
    void component(const Schema& written, const Schema& read) {
        visitComponent(written, [&](const auto& a) {
            using C = std::remove_const_t<std::remove_reference_t<decltype(a)>>;
            const auto* b = dynamic_cast<const C*>(&read);
            place = componentName(a);
            if (!expect(b != nullptr, "a component of another class")) return;
            expect(a.type() == b->type(), "the type code differs");
            components(a, *b, componentName(a));
            if constexpr (std::is_same_v<C, SCComprae>)
                expect(std::wstring(a.refFile()) == b->refFile() &&
                           std::wstring(a.cmpFile()) == b->cmpFile(),
                       "the compared files differ");
        });
    }

private:
    template <typename T>
    struct isShared : std::false_type {};
    template <typename X>
    struct isShared<std::shared_ptr<X>> : std::true_type {};
    template <typename T>
    struct isPair : std::false_type {};
    template <typename X, typename Y>
    struct isPair<std::pair<X, Y>> : std::true_type {};
    template <typename T>
    struct isTuple : std::false_type {};
    template <typename... X>
    struct isTuple<std::tuple<X...>> : std::true_type {};
    template <typename T, typename = void>
    struct isRange : std::false_type {};
    template <typename T>
    struct isRange<T, std::void_t<decltype(std::declval<const T&>().begin()),
                                  decltype(std::declval<const T&>().size())>> : std::true_type {};
    template <typename V, int N>
    struct isRange<vekmath::Tuple<V, N>> : std::false_type {};

    template <typename Tuple, typename... X>
    void tupleOf(const Tuple& b, const X&... x) {
        std::size_t i = 0;
        std::apply([&](const auto&... y) { ((field(i++, x, y)), ...); }, b);
    }
    template <typename X, typename Y>
    void field(std::size_t, const X& x, const Y& y) {
        if constexpr (std::is_same_v<X, Y>) (*this)(x, y);
    }
    template <typename V, int N>
    void operator()(const vekmath::Tuple<V, N>& a, const vekmath::Tuple<V, N>& b) {
        expect(std::memcmp(a.data(), b.data(), sizeof(V) * N) == 0, "a tuple differs");
    }

    template <typename T>
    void range(const T& a, const T& b) {
        if (!expect(a.size() == b.size(), "sizes differ: " + std::to_string(a.size()) + " and " +
                                              std::to_string(b.size())))
            return;
        auto x = a.begin();
        for (auto y = b.begin(); y != b.end(); ++x, ++y) {
            if constexpr (std::is_same_v<T, std::vector<bool>>)
                expect(bool(*x) == bool(*y), "a bit differs");
            else
                (*this)(*x, *y);
        }
    }

    // One object on each side, and always the same pair: sharing survives.
    template <typename X>
    void shared(const std::shared_ptr<X>& a, const std::shared_ptr<X>& b) {
        if constexpr (std::is_base_of_v<PMI, X> || std::is_base_of_v<IState, X>)
            if (a && !ofLibrary(*a)) {
                expect(!b, "an object of a host's class came back");
                return;
            }
        if (!expect(bool(a) == bool(b), "an empty pointer on one side only") || !a) return;
        const void* from = a.get();
        const void* to = b.get();
        const auto there = forward.emplace(from, to);
        const auto back = backward.emplace(to, from);
        if (!expect(there.first->second == to && back.first->second == from,
                    "objects shared differently"))
            return;
        if (!there.second) return;
        if constexpr (std::is_same_v<X, wchar_t>) {
            expect(std::wstring(a.get()) == std::wstring(b.get()), "a shared text differs");
        } else if constexpr (std::is_base_of_v<PMI, X> || std::is_base_of_v<IState, X>) {
            if (!expect(typeid(*a) == typeid(*b), "an object of another class")) return;
            polymorphic(*a, *b);
        } else if constexpr (std::is_same_v<X, StringValue>) {
            expect(std::wstring(a->key()) == b->key(), "a value's key differs");
            (*this)(a->get(), b->get());
        } else {
            (*this)(*a, *b);
        }
    }
    template <typename Base>
    void polymorphic(const Base& a, const Base& b) {
        if constexpr (std::is_same_v<Base, PMI>) {
            as<TessPMI, Text3D, Text3DLeader, Measure, Section, View, ViewSet>(a, b);
        } else if constexpr (std::is_same_v<Base, IState>) {
            as<CameraState, AppearanceState, TransformState, VisibilityState, SectionState,
               ClipNodeState>(a, b);
        } else {
            polymorphic(
                static_cast<const std::conditional_t<std::is_base_of_v<PMI, Base>, PMI, IState>&>(
                    a),
                static_cast<const std::conditional_t<std::is_base_of_v<PMI, Base>, PMI, IState>&>(
                    b));
        }
    }
    template <typename Base>
    static bool ofLibrary(const Base& a) {
        const std::type_info& t = typeid(a);
        return t == typeid(TessPMI) || t == typeid(Text3D) || t == typeid(Text3DLeader) ||
               t == typeid(Measure) || t == typeid(Section) || t == typeid(View) ||
               t == typeid(ViewSet) || t == typeid(CameraState) || t == typeid(AppearanceState) ||
               t == typeid(TransformState) || t == typeid(VisibilityState) ||
               t == typeid(SectionState) || t == typeid(ClipNodeState);
    }
    template <typename... C, typename Base>
    void as(const Base& a, const Base& b) {
        ((typeid(a) == typeid(C) ? (*this)(static_cast<const C&>(a), static_cast<const C&>(b))
                                 : void()),
         ...);
    }

    template <typename T>
    void buffer(const T& a, const T& b) {
        std::size_t n = 0;
        if constexpr (std::is_same_v<T, VertexInfo>) {
            (*this)(std::tie(a.stride, a.count), std::tie(b.stride, b.count));
            n = a.stride > 0 && a.count > 0 ? std::size_t(a.stride) * std::size_t(a.count) : 0;
        } else {
            (*this)(a.count, b.count);
            n = a.count > 0 ? std::size_t(a.count) : 0;
        }
        const auto& x = [](const T& v) -> const auto& {
            if constexpr (std::is_same_v<T, vek2d::IndicesInfo>)
                return v.indices;
            else
                return v.data;
        };
        if (!expect(bool(x(a)) == bool(x(b)), "a buffer on one side only") || !x(a)) return;
        const auto there = forward.emplace(x(a).get(), x(b).get());
        expect(there.first->second == x(b).get(), "buffers shared differently");
        expect(std::memcmp(x(a).get(), x(b).get(), n * sizeof(x(a)[0])) == 0, "a buffer differs");
    }

    bool expect(bool ok, const std::string& what) {
        if (!ok && problems.size() < 20) problems.push_back(place + ": " + what);
        return ok;
    }

    std::string place;
    std::map<const void*, const void*> forward;
    std::map<const void*, const void*> backward;
};

} // namespace veksg::test
