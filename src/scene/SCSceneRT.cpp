#include "veksg/SCSceneRT.h"

#include <cstddef>

#include "core/TableSteps.h"

namespace veksg {

namespace {
const std::vector<int> noEntries;

// Unlike the tables, a bit set follows the reported range exactly, shrinking with it.
// Returns whether the answer named a key.
bool followRange(int last, std::vector<bool>& bits, bool startValue) {
    if (last <= -1) return false;
    bits.resize(static_cast<std::size_t>(last) + 1, startValue);
    return true;
}
} // namespace

SCSceneRT::SCSceneRT() : Schema(Schema::SCENE_RT) {
}

SCSceneRT::~SCSceneRT() = default;

short SCSceneRT::type() const {
    return Schema::type();
}

void SCSceneRT::resize(std::shared_ptr<SchemaResizer> resizer) {
    auto& sets = visibility.sets;
    const int lastNode = resizer->lastKeyOf(10);
    followRange(lastNode, sets[0], true);
    detail::growTables(lastNode, 0.0f, nodeValues);
    detail::growTables(lastNode, noEntries, polylines.lists, meshes.lists, vertices.lists,
                       texts.lists);

    // Key space 6 stands in for 11 only when 11 is empty.
    if (!followRange(resizer->lastKeyOf(11), sets[2], true))
        followRange(resizer->lastKeyOf(6), sets[7], true);
    followRange(resizer->lastKeyOf(12), sets[3], false);
    followRange(resizer->lastKeyOf(14), sets[6], true);
    followRange(resizer->lastKeyOf(13), sets[5], true);
    followRange(resizer->lastKeyOf(15), sets[4], true);
    followRange(resizer->lastKeyOf(16), sets[1], false);
}

void SCSceneRT::cleanup() {
    visibility.clear();
    detail::clearTables(setB, setA, nodeValues, nodeLists);
    appearance.clear();
    selection.clear();
    transientMaterials.clear();
}

} // namespace veksg
