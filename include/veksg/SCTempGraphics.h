#pragma once

#include <memory>

#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/PMI.h"
#include "veksg/Schema.h"

namespace veksg {

/// Temporary annotation graphics, thrown away wholesale by `cleanup`.
///
/// The three `tempShared` tables hold the host's own temporary objects, which the library
/// only stores and releases, hence untyped shared pointers. `tempValues` holds temporary
/// points (markers, picked positions), plain values that need no destruction.
///
/// `resize` is the base's: there is nothing to grow, and the resizer is only released.
class VEKSG_API SCTempGraphics : public Schema {
public:
    SCTempGraphics();
    /// Member-wise in declaration order; the shared entries are shared, not cloned.
    SCTempGraphics(const SCTempGraphics&) = default;
    SCTempGraphics& operator=(const SCTempGraphics&) = default;
    ~SCTempGraphics() override;

    short type() const override;
    /// Releases every shared entry, nulling it first, and empties all seven tables in
    /// declaration order, capacities kept. Pointees that others still hold stay alive.
    void cleanup() override;

    Container<int, std::shared_ptr<Text3D>> texts3d;
    Container<int, std::shared_ptr<Text3DLeader>> leaders;
    Container<int, std::shared_ptr<void>> tempShared1;
    Container<int, std::shared_ptr<void>> tempShared2;
    Container<int, std::shared_ptr<Measure>> measures;
    Container<int, vekmath::Tuple<float, 3>> tempValues;
    Container<int, std::shared_ptr<void>> tempShared3;
};

} // namespace veksg
