#include "veksg/SCSceneTopo.h"

#include "core/TableSteps.h"

namespace veksg {

using detail::growTables;
using detail::growTablesDeduped;

namespace {
const std::vector<int> noChildren;
} // namespace

SCSceneTopo::SCSceneTopo() : Schema(Schema::SCENE_TOPO) {
}

SCSceneTopo::SCSceneTopo(const SCSceneTopo&) = default;

SCSceneTopo& SCSceneTopo::operator=(const SCSceneTopo&) = default;

SCSceneTopo::~SCSceneTopo() = default;

short SCSceneTopo::type() const {
    return Schema::type();
}

void SCSceneTopo::resize(std::shared_ptr<SchemaResizer> resizer) {
    resizeTopoNode(resizer);
    resizeTopoFace(resizer);
    resizeTopoEdge(resizer);
    resizeTopoOther(resizer);
}

void SCSceneTopo::resizeTopoNode(std::shared_ptr<SchemaResizer> resizer) {
    const int last = resizer->lastKeyOf(10);
    growTables(last, -1, nodeRefs1, nodeRefs2);
    growTables(last, noChildren, nodeLists2);
    growTablesDeduped(last, nodeLists8, nodeLists9);
    growTables(last, -1, nodeRefs4, nodeRefs3);
    growTablesDeduped(last, nodeLists4, nodeLists3, nodeLists5, nodeLists7, nodeLists6, nodeLists10,
                      nodeLists11);
    growTables(last, noChildren, nodeLists1);
    growTables(last, char{1}, nodeFlags);
}

void SCSceneTopo::resizeTopoFace(std::shared_ptr<SchemaResizer> resizer) {
    const int last = resizer->lastKeyOf(11);
    growTablesDeduped(last, faceLists2);
    growTables(last, noChildren, faceLists1);
    growTables(last, -1, faceRefs1);
    growTablesDeduped(last, faceLists4, faceLists3);
    growTables(last, -1, faceRefs2);
}

void SCSceneTopo::resizeTopoEdge(std::shared_ptr<SchemaResizer> resizer) {
    const int last = resizer->lastKeyOf(12);
    growTablesDeduped(last, edgeLists2);
    growTables(last, -1, edgeRefs1);
    growTables(last, noChildren, edgeLists1);
    growTablesDeduped(last, edgeLists3, edgeLists4);
}

void SCSceneTopo::resizeTopoOther(std::shared_ptr<SchemaResizer> resizer) {
    const int last14 = resizer->lastKeyOf(14);
    growTables(last14, -1, refs14b, refs14c);
    growTables(last14, noChildren, lists14);
    growTables(last14, -1, refs14a);

    const int last13 = resizer->lastKeyOf(13);
    growTables(last13, -1, refs13b, refs13a);
    growTables(last13, noChildren, lists13);

    const int last15 = resizer->lastKeyOf(15);
    growTables(last15, -1, refs15a);
    growTablesDeduped(last15, lists15a, lists15b);
    growTables(last15, -1, refs15b);
}

} // namespace veksg
