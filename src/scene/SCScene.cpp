#include "veksg/SCScene.h"

#include "core/TableSteps.h"

namespace veksg {

SCScene::SCScene() : Schema(Schema::SCENE) {
}

SCScene::SCScene(const SCScene&) = default;

SCScene& SCScene::operator=(const SCScene&) = default;

SCScene::~SCScene() = default;

short SCScene::type() const {
    return Schema::type();
}

void SCScene::resize(std::shared_ptr<SchemaResizer> resizer) {
    using detail::growTables;
    growTables(resizer->lastKeyOf(6), -1, links6a, links6b);
    growTables(resizer->lastKeyOf(7), -1, links7);
    growTables(fonts.lastKey(), std::vector<int>(), hierarchy);
    growTables(texts.lastKey(), -1, textLinksA, textLinksB);
    growTables(resizer->lastKeyOf(8), -1, links8);
}

void SCScene::cleanup() {
    // The geometry memory is freed even while a copy of the scene still holds the object.
    detail::releaseShared(meshes, [](Mesh& mesh) {
        mesh.vn.clear();
        mesh.vnt.clear();
        mesh.vnc.clear();
    });
    detail::releaseShared(textures, [](Texture&) {});
    detail::releaseShared(polylines, [](Polyline& polyline) {
        polyline.points.clear();
        polyline.values.clear();
    });
    detail::clearTables(meshMaterials, polylineMaterials, transforms, boxes, points, links6a,
                        links6b, links7, fonts, texts, hierarchy, textLinksA, textLinksB);
}

} // namespace veksg
