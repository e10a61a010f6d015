#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/Hierarchy.h"
#include "veksg/Schema.h"

namespace veksg {

/// Boundary-representation topology: entity tables and the relation tables around them,
/// keyed by node (key space 10), face (11), edge (12) and three further key spaces (13 to
/// 15). `resize` grows the relations and drops repeated children from the hierarchies; the
/// entity tables are the host's to size. `cleanup` is the base's: the topology survives it.
///
/// Six relation lists (`nodeLists1`, `nodeLists2`, `faceLists1`, `edgeLists1`, `lists13`,
/// `lists14`) are never deduplicated by `resize` and may keep repeated children.
class VEKSG_API SCSceneTopo : public Schema {
public:
    SCSceneTopo();
    /// Member-wise in declaration order; `namesByKey` copies its strings.
    SCSceneTopo(const SCSceneTopo&);
    SCSceneTopo& operator=(const SCSceneTopo&);
    ~SCSceneTopo() override;

    short type() const override;
    /// Asks key spaces 10, 11, 12, 14, 13 and 15, in that order. A hierarchy drops repeated
    /// children after its own growth even when the answer is below its size; a negative
    /// answer skips that key space's tables entirely, repeated children included.
    void resize(std::shared_ptr<SchemaResizer> resizer) override;

    Container<int, Node> nodes;
    Container<int, Face> faces;
    Container<int, Surface> surfaces;
    Container<int, Edge> edges;
    Container<int, Curve> curves;
    Container<int, Vertex> vertices;
    Hierarchy nodeLists1;
    Hierarchy nodeLists2;
    Hierarchy nodeLists3;
    Hierarchy nodeLists4;
    Hierarchy nodeLists5;
    Hierarchy nodeLists6;
    Hierarchy nodeLists7;
    Container<int, int> nodeRefs1;
    Container<int, int> nodeRefs2;
    Container<int, int> nodeRefs3;
    Container<int, int> nodeRefs4;
    Hierarchy nodeLists8;
    Hierarchy nodeLists9;
    Hierarchy nodeLists10;
    Hierarchy nodeLists11;
    Hierarchy faceLists1;
    Hierarchy faceLists2;
    Hierarchy faceLists3;
    Hierarchy faceLists4;
    Container<int, int> faceRefs1;
    Container<int, int> faceRefs2;
    Hierarchy edgeLists1;
    Hierarchy edgeLists2;
    Hierarchy edgeLists3;
    Hierarchy edgeLists4;
    Container<int, int> edgeRefs1;
    Container<int, int> refs15a;
    Hierarchy lists15a;
    Hierarchy lists15b;
    Container<int, int> refs15b;
    Container<int, int> refs13a;
    Hierarchy lists13;
    Container<int, int> refs13b;
    Container<int, int> refs14a;
    Hierarchy lists14;
    Container<int, int> refs14b;
    Container<int, int> refs14c;
    std::map<int, std::wstring> namesByKey;
    /// Nodes added by `resize` start with their flag set (1).
    Container<int, char> nodeFlags;
    int topoKey = -1;
    int topoCount = 0;

private:
    void resizeTopoNode(std::shared_ptr<SchemaResizer> resizer);
    void resizeTopoFace(std::shared_ptr<SchemaResizer> resizer);
    void resizeTopoEdge(std::shared_ptr<SchemaResizer> resizer);
    void resizeTopoOther(std::shared_ptr<SchemaResizer> resizer);
};

} // namespace veksg
