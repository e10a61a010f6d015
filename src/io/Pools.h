#pragma once

// Objects that tables hold through shared pointers are written once each, in tables of their
// own ahead of the components, and tables refer to them by position (0 for an empty pointer,
// n for the n-th object). Pools come in this order so that an object only refers to objects
// of earlier pools or to earlier objects of its own pool.
#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "io/Records.h"

namespace veksg::io::detail {

enum PoolKind : int {
    WideStrings,
    FloatBuffers,
    IndexBuffers,
    Meshes,
    Polylines,
    Textures,
    Triads,
    Pmis,
    VertexInfos,
    IndexInfos,
    StringValues,
    States,
    StateContainers,
    StateTypeContainers,
    poolKinds
};

inline const char* poolName(int kind) {
    static const char* const names[poolKinds] = {
        "wideStrings",     "floatBuffers",       "indexBuffers", "meshes",
        "polylines",       "textures",           "triads",       "pmis",
        "vertexInfos",     "indexInfos",         "stringValues", "states",
        "stateContainers", "stateTypeContainers"};
    return kind >= 0 && kind < poolKinds ? names[kind] : "?";
}

/// The pool of a pointee type, and the type the pool holds (the base class for annotations and
/// states, which share one pool each).
template <typename X, typename = void>
struct PoolOf;
#define VEKSG_IO_POOL(Type, Kind, StoredType)                                                      \
    template <>                                                                                    \
    struct PoolOf<Type> {                                                                          \
        static constexpr int kind = Kind;                                                          \
        using Stored = StoredType;                                                                 \
    };
VEKSG_IO_POOL(wchar_t, WideStrings, wchar_t)
VEKSG_IO_POOL(float[], FloatBuffers, float[])
VEKSG_IO_POOL(std::uint32_t[], IndexBuffers, std::uint32_t[])
VEKSG_IO_POOL(veksg::Mesh, Meshes, veksg::Mesh)
VEKSG_IO_POOL(veksg::Polyline, Polylines, veksg::Polyline)
VEKSG_IO_POOL(veksg::Texture, Textures, veksg::Texture)
VEKSG_IO_POOL(veksg::TriadInfo, Triads, veksg::TriadInfo)
VEKSG_IO_POOL(veksg::VertexInfo, VertexInfos, veksg::VertexInfo)
VEKSG_IO_POOL(veksg::IndexInfo, IndexInfos, veksg::IndexInfo)
VEKSG_IO_POOL(veksg::StringValue, StringValues, veksg::StringValue)
VEKSG_IO_POOL(veksg::StateContainer, StateContainers, veksg::StateContainer)
VEKSG_IO_POOL(veksg::StateTypeContainer, StateTypeContainers, veksg::StateTypeContainer)
#undef VEKSG_IO_POOL
template <typename X>
struct PoolOf<X, std::enable_if_t<std::is_base_of_v<veksg::PMI, X>>> {
    static constexpr int kind = Pmis;
    using Stored = veksg::PMI;
};
template <typename X>
struct PoolOf<X, std::enable_if_t<std::is_base_of_v<veksg::IState, X>>> {
    static constexpr int kind = States;
    using Stored = veksg::IState;
};

/// Pointers whose pointees are the host's: never written, counted.
template <typename T>
struct IsHostOwned : std::false_type {};
template <>
struct IsHostOwned<std::shared_ptr<void>> : std::true_type {};
template <>
struct IsHostOwned<std::shared_ptr<veksg::IStateActivator>> : std::true_type {};

/// The writer's pools: each object's position, found by its address.
struct PoolsOut {
    struct Pool {
        std::unordered_map<const void*, std::uint32_t> index;
        std::vector<const void*> objects;
        /// Elements of each buffer: the most that any holder reads.
        std::vector<std::uint64_t> lengths;
    };
    std::array<Pool, poolKinds> pools;

    template <typename X>
    static const void* key(const std::shared_ptr<X>& p) {
        using Stored = std::remove_extent_t<typename PoolOf<X>::Stored>;
        return static_cast<const Stored*>(p.get());
    }
    /// 0 for an empty pointer and for an object not gathered (a class the library does not
    /// define).
    template <typename X>
    std::uint32_t ref(const std::shared_ptr<X>& p) const {
        if (!p) return 0;
        const Pool& pool = pools[PoolOf<X>::kind];
        const auto found = pool.index.find(key(p));
        return found == pool.index.end() ? 0 : found->second;
    }
    std::uint64_t count() const {
        std::uint64_t all = 0;
        for (const Pool& pool : pools)
            all += pool.objects.size();
        return all;
    }
};

/// The reader's pools, in file order.
struct PoolsIn {
    std::vector<std::shared_ptr<wchar_t>> wideStrings;
    std::vector<std::pair<std::shared_ptr<float[]>, std::uint64_t>> floatBuffers;
    std::vector<std::pair<std::shared_ptr<std::uint32_t[]>, std::uint64_t>> indexBuffers;
    std::vector<std::shared_ptr<veksg::Mesh>> meshes;
    std::vector<std::shared_ptr<veksg::Polyline>> polylines;
    std::vector<std::shared_ptr<veksg::Texture>> textures;
    std::vector<std::shared_ptr<veksg::TriadInfo>> triads;
    std::vector<std::shared_ptr<veksg::PMI>> pmis;
    std::vector<std::shared_ptr<veksg::VertexInfo>> vertexInfos;
    std::vector<std::shared_ptr<veksg::IndexInfo>> indexInfos;
    std::vector<std::shared_ptr<veksg::StringValue>> stringValues;
    std::vector<std::shared_ptr<veksg::IState>> states;
    std::vector<std::shared_ptr<veksg::StateContainer>> stateContainers;
    std::vector<std::shared_ptr<veksg::StateTypeContainer>> stateTypeContainers;

    auto& of(veksg::Mesh*) { return meshes; }
    auto& of(veksg::Polyline*) { return polylines; }
    auto& of(veksg::Texture*) { return textures; }
    auto& of(veksg::TriadInfo*) { return triads; }
    auto& of(veksg::PMI*) { return pmis; }
    auto& of(veksg::VertexInfo*) { return vertexInfos; }
    auto& of(veksg::IndexInfo*) { return indexInfos; }
    auto& of(veksg::StringValue*) { return stringValues; }
    auto& of(veksg::IState*) { return states; }
    auto& of(veksg::StateContainer*) { return stateContainers; }
    auto& of(veksg::StateTypeContainer*) { return stateTypeContainers; }
};

} // namespace veksg::io::detail
