#include "veksg/SCSceneRes.h"

#include "core/TableSteps.h"

namespace veksg {

namespace {
const std::vector<int> noEntries;
} // namespace

SCSceneRes::SCSceneRes() : Schema(Schema::SCENE_RES) {
}

SCSceneRes::SCSceneRes(const SCSceneRes&) = default;

SCSceneRes& SCSceneRes::operator=(const SCSceneRes&) = default;

SCSceneRes::~SCSceneRes() = default;

short SCSceneRes::type() const {
    return Schema::type();
}

void SCSceneRes::resize(std::shared_ptr<SchemaResizer> /*resizer*/) {
    using detail::growTables;
    growTables(vertexInfos.lastKey(), noEntries, vertexLists);

    const int lastIndex = indexInfos.lastKey();
    growTables(lastIndex, -1, indexLinks);
    growTables(lastIndex, noEntries, indexLists1, indexLists2, indexLists3);

    const int lastA = primitivesA.lastKey();
    growTables(lastA, -1, primALinks2, primALinks1, primALinks3);

    // The B and C links are keyed across tables on purpose; hosts rely on exactly this.
    const int lastB = primitivesB.lastKey();
    if (lastB > -1) {
        growTables(lastB, -1, primBLinks2);
        growTables(lastA, -1, primBLinks1);
        growTables(primitivesC.lastKey(), -1, primCLinks2, primCLinks1);
    }

    growTables(fonts.lastKey(), noEntries, fontLists);
    growTables(texts.lastKey(), -1, textLinksA, textLinksB);
}

} // namespace veksg
