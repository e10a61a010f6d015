#pragma once

#include <cstdint>

#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"

namespace veksg {

/// The kind of record a `PairT<EntityType, int>` refers to. The numbering is the host's;
/// the library only stores and copies it, so only the default 0 is fixed.
enum EntityType : std::int32_t {
    ENTITY_NONE = 0,
    ENTITY_NODE,
    ENTITY_FACE,
    ENTITY_EDGE,
    ENTITY_VERTEX,
    ENTITY_SURFACE,
    ENTITY_CURVE,
    ENTITY_MESH,
    ENTITY_POLYLINE,
    ENTITY_PMI,
};

/// Two-field record; `first` is value-initialised and `second` is 0 by default.
template <typename A, typename B>
struct PairT {
    A first{};
    B second{};

    PairT() = default;
    PairT(const A& a, const B& b) : first(a), second(b) {}
};

extern template struct VEKSG_API PairT<vekmath::Tuple<float, 16>, int>;
extern template struct VEKSG_API PairT<EntityType, int>;
extern template struct VEKSG_API PairT<unsigned char, int>;

extern template class VEKSG_API Container<int, PairT<vekmath::Tuple<float, 16>, int>>;
extern template class VEKSG_API Container<int, PairT<EntityType, int>>;

} // namespace veksg
