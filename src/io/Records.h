#pragma once

// How each record of the data model is laid out in a snapshot: one list of fields per type,
// shared by the writer, the reader, the walk that gathers shared objects and the bound on a
// record's smallest encoding. Records whose bytes are exactly their fields (no padding, no
// pointers) are copied as they are instead.
#include <deque>
#include <map>
#include <memory>
#include <type_traits>

#include "vek2d/SCScene2D.h"
#include "veksg/veksg.h"

namespace veksg::io::detail {

/// Types copied byte for byte: little-endian numbers and records of them without padding.
template <typename T>
struct IsBulk
    : std::bool_constant<(std::is_arithmetic_v<T> && !std::is_same_v<T, bool> &&
                          !std::is_same_v<T, wchar_t> && !std::is_same_v<T, long double> &&
                          (!std::is_same_v<T, unsigned long> || sizeof(unsigned long) == 8) &&
                          (!std::is_same_v<T, long> || sizeof(long) == 8)) ||
                         std::is_enum_v<T>> {};
template <typename T, int N>
struct IsBulk<vekmath::Tuple<T, N>> : IsBulk<T> {};
#define VEKSG_IO_BULK(Type, bytes)                                                                 \
    template <>                                                                                    \
    struct IsBulk<Type> : std::true_type {                                                         \
        static_assert(sizeof(Type) == (bytes), "a bulk record has no padding");                    \
    };
VEKSG_IO_BULK(veksg::VN, 24)
VEKSG_IO_BULK(veksg::VNC, 40)
VEKSG_IO_BULK(veksg::VNT, 32)
VEKSG_IO_BULK(veksg::NV, 24)
VEKSG_IO_BULK(veksg::CNV, 40)
VEKSG_IO_BULK(veksg::TNV, 32)
VEKSG_IO_BULK(veksg::Edge, 36)
VEKSG_IO_BULK(veksg::Vertex, 16)
VEKSG_IO_BULK(veksg::Surface, 4)
VEKSG_IO_BULK(veksg::Curve, 4)
VEKSG_IO_BULK(veksg::Hole, 28)
VEKSG_IO_BULK(veksg::HoleGroupEntry, 16)
VEKSG_IO_BULK(veksg::DraftRange, 16)
VEKSG_IO_BULK(vek2d::Ellipse, 44)
VEKSG_IO_BULK(vek2d::EntityColor, 16)
#undef VEKSG_IO_BULK
template <>
struct IsBulk<veksg::PairT<vekmath::Tuple<float, 16>, int>> : std::true_type {
    static_assert(sizeof(veksg::PairT<vekmath::Tuple<float, 16>, int>) == 68, "no padding");
};
template <>
struct IsBulk<veksg::PairT<veksg::EntityType, int>> : std::true_type {
    static_assert(sizeof(veksg::PairT<veksg::EntityType, int>) == 8, "no padding");
};
template <typename T>
inline constexpr bool isBulk = IsBulk<T>::value;

/// `Record<T>::fields(archive, value)` names T's fields in wire order; `value` is const when
/// writing. Only records listed here can be written.
template <typename T>
struct Record;

template <typename T, typename = void>
struct HasRecord : std::false_type {};
template <typename T>
struct HasRecord<T, std::void_t<decltype(sizeof(Record<T>))>> : std::true_type {};

// Fields reached through accessors: the archive calls the getter when writing and the setter
// when reading.
#define VEKSG_IO_NAMED(archive, value, getter, setter)                                             \
    archive.named(                                                                                 \
        value, [](const auto& owner) { return owner.getter(); },                                   \
        [](auto& owner, const std::wstring& text) { owner.setter(text.c_str()); })

template <>
struct Record<veksg::BBox> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.min), a(v.max), a(v.valid);
    }
};
template <>
struct Record<veksg::OBBox> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.center), a(v.axisX), a(v.axisY), a(v.axisZ), a(v.valid);
    }
};
template <>
struct Record<veksg::Transform> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.matrix), a(v.valid);
    }
};
template <>
struct Record<veksg::MMaterial> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.ambient), a(v.diffuse), a(v.specular), a(v.emission), a(v.shininess), a(v.valid);
    }
};
template <>
struct Record<veksg::PLMaterial> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.color), a(v.width), a(v.valid);
    }
};
template <>
struct Record<veksg::Texture> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.path);
    }
};
template <>
struct Record<veksg::Font> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.size), a(v.style), a(v.attributes);
        VEKSG_IO_NAMED(a, v, name, setName);
        VEKSG_IO_NAMED(a, v, path, setPath);
    }
};
template <>
struct Record<veksg::Text> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.matrix), a(v.position), a(v.font), a(v.color), a(v.attributes), a(v.text);
    }
};
template <>
struct Record<veksg::Node> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.id), a(v.flag), a(v.ref);
        VEKSG_IO_NAMED(a, v, name, setName);
    }
};
template <>
struct Record<veksg::Face> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.id), a(v.flag), a(v.pointA), a(v.pointB);
    }
};
template <>
struct Record<veksg::PrimitiveInfo> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.id), a(v.first), a(v.count), a(v.mode), a(v.color);
    }
};
template <>
struct Record<veksg::Mesh> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.vn), a(v.vnc), a(v.vnt);
    }
};
template <>
struct Record<veksg::Polyline> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.points), a(v.values);
    }
};
// Buffers carry no length of their own: a vertex buffer holds stride x count floats, an index
// buffer count indices.
template <>
struct Record<veksg::VertexInfo> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.stride), a(v.count);
        const bool some = v.stride > 0 && v.count > 0;
        a.buffer(v.data, some ? std::uint64_t(v.stride) * std::uint64_t(v.count) : 0);
    }
};
template <>
struct Record<veksg::IndexInfo> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.count);
        a.buffer(v.data, v.count > 0 ? std::uint64_t(v.count) : 0);
    }
};
template <>
struct Record<vek2d::IndicesInfo> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.count);
        a.buffer(v.indices, v.count > 0 ? std::uint64_t(v.count) : 0);
    }
};
template <>
struct Record<veksg::Layer> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.name);
    }
};
template <>
struct Record<veksg::ExtFile> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.path), a(v.id);
    }
};
template <>
struct Record<veksg::HoleRecord> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.origin), a(v.axis), a(v.kind), a(v.face), a(v.diameter), a(v.depth), a(v.name);
    }
};
template <>
struct Record<vek2d::Entity> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.points), a(v.id), a(v.scale), a(v.value0), a(v.value1), a(v.flag), a(v.value2);
        a(v.style), a(v.points2), a(v.matrix);
    }
};
template <>
struct Record<vek2d::HatchPattern> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.loops);
    }
};
template <>
struct Record<vek2d::View> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.name), a(v.point0), a(v.point1), a(v.flag);
    }
};
template <>
struct Record<vek2d::Sheet> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.flag0), a(v.name), a(v.tolerance), a(v.point0), a(v.point1), a(v.flag1), a(v.color);
    }
};
template <>
struct Record<veksg::TriadInfo> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.kind), a(v.origin), a(v.options), a(v.pointLists), a(v.matrixLists), a(v.points);
    }
};

// Annotations: the base's fields, then the class's own.
template <typename A, typename T>
void pmiFields(A& a, T& v) {
    a(v.id);
    VEKSG_IO_NAMED(a, v, name, setName);
    a(v.pmiType);
}
template <>
struct Record<veksg::TessPMI> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        pmiFields(a, v);
    }
};
template <>
struct Record<veksg::ViewSet> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        pmiFields(a, v);
    }
};
template <>
struct Record<veksg::Text3D> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        pmiFields(a, v);
        a(v.text), a(v.position), a(v.secondPoint), a(v.matrix);
    }
};
template <>
struct Record<veksg::Text3DLeader> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        pmiFields(a, v);
        a(v.text3d), a(v.leader);
    }
};
template <>
struct Record<veksg::Measure> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        pmiFields(a, v);
        a(v.point1), a(v.point2), a(v.point3), a(v.value), a(v.text3d), a(v.leader);
        a(v.measureSetting), a(v.measureText), a(v.point4);
    }
};
template <>
struct Record<veksg::Section> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        pmiFields(a, v);
        a(v.origin), a(v.normal), a(v.sectionSetting);
    }
};
template <>
struct Record<veksg::View> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        pmiFields(a, v);
        a(v.viewIndex), a(v.position), a(v.target), a(v.up), a(v.viewFlag);
        a(v.text1), a(v.text2), a(v.text3), a(v.text4), a(v.viewValue);
        a(v.list1), a(v.list2), a(v.list3), a(v.list4), a(v.floatList), a(v.list5);
        a(v.transforms), a(v.points), a(v.list6), a(v.colorList), a(v.viewEnd);
    }
};

// States: both identifiers, then the class's own fields.
template <>
struct Record<veksg::CameraState> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.cmdId), a(v.seqId), a(v.position), a(v.target), a(v.up);
    }
};
template <>
struct Record<veksg::AppearanceState> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.cmdId), a(v.seqId), a(v.ids), a(v.colors), a(v.transparencies);
    }
};
template <>
struct Record<veksg::TransformState> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.cmdId), a(v.seqId), a(v.ids), a(v.transforms), a(v.mode), a(v.triad);
    }
};
template <>
struct Record<veksg::VisibilityState> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.cmdId), a(v.seqId), a(v.values), a(v.ids);
    }
};
template <>
struct Record<veksg::SectionState> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.cmdId), a(v.seqId), a(v.sections), a(v.mode), a(v.ids), a(v.triad), a(v.flags);
    }
};
template <>
struct Record<veksg::ClipNodeState> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.cmdId), a(v.seqId), a(v.flags), a(v.flag);
    }
};
template <>
struct Record<veksg::StateContainer> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.states);
    }
};
template <>
struct Record<veksg::StateTypeContainer> {
    template <typename A, typename T>
    static void fields(A& a, T& v) {
        a(v.containers);
    }
};
#undef VEKSG_IO_NAMED

/// Calls `f(concrete)` for an annotation of one of the library's own classes (by exact type:
/// a host's subclass is the host's) and returns its tag, or -1.
template <typename P, typename F>
int withPmi(P& pmi, F&& f) {
    const std::type_info& type = typeid(pmi);
    int tag = 0;
    auto as = [&](auto* tag0) {
        using C = std::remove_pointer_t<decltype(tag0)>;
        if (type != typeid(C)) {
            ++tag;
            return false;
        }
        f(static_cast<std::conditional_t<std::is_const_v<P>, const C&, C&>>(pmi));
        return true;
    };
    if (as(static_cast<veksg::TessPMI*>(nullptr)) || as(static_cast<veksg::Text3D*>(nullptr)) ||
        as(static_cast<veksg::Text3DLeader*>(nullptr)) ||
        as(static_cast<veksg::Measure*>(nullptr)) || as(static_cast<veksg::Section*>(nullptr)) ||
        as(static_cast<veksg::View*>(nullptr)) || as(static_cast<veksg::ViewSet*>(nullptr)))
        return tag;
    return -1;
}

template <typename S, typename F>
int withState(S& state, F&& f) {
    const std::type_info& type = typeid(state);
    int tag = 0;
    auto as = [&](auto* tag0) {
        using C = std::remove_pointer_t<decltype(tag0)>;
        if (type != typeid(C)) {
            ++tag;
            return false;
        }
        f(static_cast<std::conditional_t<std::is_const_v<S>, const C&, C&>>(state));
        return true;
    };
    if (as(static_cast<veksg::CameraState*>(nullptr)) ||
        as(static_cast<veksg::AppearanceState*>(nullptr)) ||
        as(static_cast<veksg::TransformState*>(nullptr)) ||
        as(static_cast<veksg::VisibilityState*>(nullptr)) ||
        as(static_cast<veksg::SectionState*>(nullptr)) ||
        as(static_cast<veksg::ClipNodeState*>(nullptr)))
        return tag;
    return -1;
}

} // namespace veksg::io::detail
