#pragma once

#include <memory>

#include "veksg/Export.h"

namespace veksg {

/// Host-implemented policy that tells components how far each key space reaches.
class VEKSG_API SchemaResizer {
public:
    SchemaResizer() = default;
    SchemaResizer(const SchemaResizer&) = default;
    SchemaResizer& operator=(const SchemaResizer&) = default;
    virtual ~SchemaResizer();

    /// The last key that must exist in key space `keySpace`; any value below 0 (normally -1)
    /// when that key space is empty or unknown to the host.
    virtual int lastKeyOf(const short& keySpace) = 0;
};

/// Base of every schema component: a type code plus the resize and cleanup protocol.
class VEKSG_API Schema {
public:
    /// Component type codes. The gaps (2, 9, 14 to 21, 23, 24, 26, 27, 30, 31) name no
    /// component and stay free.
    enum TYPE {
        SCENE = 0,
        SCENE_RT = 1,
        PMI_DATA = 3,
        EXT_FILE = 4,
        ATTRIBUTES = 5,
        LAYER = 6,
        TEMP_GRAPHICS = 7,
        INFO = 8,
        VIEW = 10,
        ANIMATION = 11,
        SCENE_TOPO = 12,
        SCENE_RES = 13,
        FEATURES = 22,
        SCENE_2D = 25,
        HOOPS = 28,
        COMPRAE = 29,
        STATES = 32,
        THICKNESS_ANALYSIS = 33,
        DRAFT_ANGLE_ANALYSIS = 34,
        HOLE_INFO = 35,
    };

    explicit Schema(const short& type);
    Schema(const Schema&) = default;
    /// Copies the type code too.
    Schema& operator=(const Schema&) = default;
    virtual ~Schema();

    /// The stored type code. Pure so that every component states its own override; the
    /// base body is what each override returns.
    virtual short type() const = 0;
    /// Grows side tables to the key ranges the resizer reports. Base: nothing.
    virtual void resize(std::shared_ptr<SchemaResizer> resizer);
    /// Empties the component for reuse; the type code is kept. Base: nothing.
    virtual void cleanup();

private:
    short typeCode;
};

} // namespace veksg
