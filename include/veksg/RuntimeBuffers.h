#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Functors.h"
#include "veksg/PairT.h"

namespace veksg {

// Per-frame working sets of the viewer. They are emptied and refilled every frame, so
// `clear()` keeps every table's capacity and `reserve(n)` pre-sizes every table in one call.
// What each table holds is the drawing code's business; the library sizes, copies and empties
// them. Copies and moves are member-wise in declaration order.

/// Instance matrices with an int each, as the batched buffers store them.
using InstancesRT = Container<int, PairT<vekmath::Tuple<float, 16>, int>>;

/// Batched meshes.
class VEKSG_API MeshRT {
public:
    /// Empties every table in declaration order (inner lists freed) and resets `dirty`.
    void clear();
    /// Raises every table's capacity to `n` where it is lower; `dirty` untouched. A negative
    /// `n` throws std::length_error("vector too long") at `instances`, changing nothing.
    void reserve(int n);

    InstancesRT instances;
    Container<int, int> refs1;
    Container<int, int> refs2;
    Container<int, int> refs3;
    Container<int, int> refs4;
    Container<int, std::vector<int>> lists;
    Container<int, int> refs5;
    Container<int, unsigned char> flags;
    Container<int, int> refs6;
    bool dirty = false;
};

/// Batched polylines; the same tables and rules as `MeshRT`, kept a class of its own so that
/// the two batches cannot be mixed up.
class VEKSG_API PolylineRT {
public:
    void clear();
    void reserve(int n);

    InstancesRT instances;
    Container<int, int> refs1;
    Container<int, int> refs2;
    Container<int, int> refs3;
    Container<int, int> refs4;
    Container<int, std::vector<int>> lists;
    Container<int, int> refs5;
    Container<int, unsigned char> flags;
    Container<int, int> refs6;
    bool dirty = false;
};

/// Batched vertices: no `refs4` and no dirty flag.
class VEKSG_API VertexRT {
public:
    /// Empties `instances`, `refs1`, `refs3`, `refs2`, `flags`, `lists` (inner lists freed),
    /// `refs5`, `refs6`, in that order.
    void clear();
    void reserve(int n);

    InstancesRT instances;
    Container<int, int> refs1;
    Container<int, int> refs2;
    Container<int, int> refs3;
    Container<int, std::vector<int>> lists;
    Container<int, int> refs5;
    Container<int, unsigned char> flags;
    Container<int, int> refs6;
};

/// Batched texts: no `refs4`.
class VEKSG_API TextRT {
public:
    /// Empties every table in declaration order (inner lists freed) and resets `dirty`.
    void clear();
    void reserve(int n);

    InstancesRT instances;
    Container<int, int> refs1;
    Container<int, int> refs2;
    Container<int, int> refs3;
    Container<int, std::vector<int>> lists;
    Container<int, int> refs5;
    Container<int, unsigned char> flags;
    Container<int, int> refs6;
    bool dirty = false;
};

/// Visibility: one bit per key of a key space in each set (`SCSceneRT::resize` says which),
/// and the predicate chains the host applies to entity keys.
class VEKSG_API VisibilityRT {
public:
    /// Clears the four chains first, then empties the eight sets.
    void clear();

    std::array<std::vector<bool>, 8> sets;
    std::array<PairFunctorHelper, 4> functors;
};

/// Eleven lists of selected keys.
class VEKSG_API SelectionRT {
public:
    SelectionRT() = default;
    /// Copies into fresh lists through the same path as assignment.
    SelectionRT(const SelectionRT& other);
    SelectionRT(SelectionRT&&) = default;
    /// Copies each list into the existing one, reusing its storage where it is large enough;
    /// self-assignment changes nothing.
    SelectionRT& operator=(const SelectionRT& other);
    SelectionRT& operator=(SelectionRT&&) = default;
    ~SelectionRT() = default;

    void clear();

    std::array<std::vector<int>, 11> selection;

private:
    /// Makes `to` an exact copy of `from`, reallocating only when `to` is too small.
    void copySelection(const std::vector<int>& from, std::vector<int>& to);
};

/// Appearance overrides: four lists of packed 32-bit values (for example RGBA colours).
class VEKSG_API AppearanceRT {
public:
    void clear();

    std::array<std::vector<std::uint32_t>, 4> appearance;
};

/// Transient materials: five link tables and a count.
class VEKSG_API TransientMatRT {
public:
    /// Empties `refs1`, `refs3`, `refs4`, `refs5`, `refs2`, in that order, and zeroes `count`.
    void clear();

    Container<int, int> refs1;
    Container<int, int> refs2;
    Container<int, int> refs3;
    Container<int, int> refs4;
    Container<int, int> refs5;
    std::int32_t count = 0;
};

} // namespace veksg
