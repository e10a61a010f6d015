#pragma once

#include <memory>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/RuntimeBuffers.h"
#include "veksg/Schema.h"
#include "veksg/Set.h"

namespace veksg {

/// What the viewer computes while it runs: the batched render buffers, visibility bit sets
/// sized to the host's key spaces, the selection, appearance overrides and transient
/// materials.
class VEKSG_API SCSceneRT : public Schema {
public:
    SCSceneRT();
    SCSceneRT(const SCSceneRT&) = default;
    SCSceneRT& operator=(const SCSceneRT&) = default;
    ~SCSceneRT() override;

    short type() const override;
    /// Asks key spaces 10, 11 (6 only when 11 answers negative), 12, 14, 13, 15 and 16, in
    /// that order. Key space 10 grows `nodeValues` and the four buffers' `lists`; each answer
    /// sizes one visibility set to exactly answer + 1 bits, shrinking it if need be. New bits
    /// start set, except in sets 1 and 3. A negative answer leaves its set as it is.
    void resize(std::shared_ptr<SchemaResizer> resizer) override;
    /// Drops the transient state: visibility, both sets, the per-node tables, appearance,
    /// selection and transient materials. The batched buffers survive; only their own
    /// `clear()` empties them.
    void cleanup() override;

    MeshRT meshes;
    PolylineRT polylines;
    VertexRT vertices;
    TextRT texts;
    VisibilityRT visibility;
    SelectionRT selection;
    Container<int, std::vector<int>> nodeLists;
    Container<int, float> nodeValues;
    Set<int> setA;
    Set<int> setB;
    AppearanceRT appearance;
    TransientMatRT transientMaterials;
};

} // namespace veksg
