#include "PointCloud.h"

namespace vekhost {

int addVertexBuffer(veksg::SCSceneRes& resources,
                    const std::shared_ptr<veksg::VertexInfo>& buffer) {
    const int key = resources.vertexInfos.insert(buffer);
    resources.vertexLists.resizeToFitKey(key, {});
    return key;
}

void addPointPrimitive(veksg::SCSceneRes& resources, int node, int buffer,
                       const veksg::Point3& color) {
    veksg::PrimitiveInfo primitive;
    primitive.id = node;
    primitive.first = 0;
    primitive.count = resources.vertexInfos.getValue(buffer)->count;
    primitive.mode = points::mode;
    primitive.color = color;
    const int key = resources.primitivesC.insert(primitive);
    // The library sizes these links only while edges exist; a point cloud has none.
    resources.primCLinks1.insert(key, buffer, -1);
    resources.vertexLists.begin()[buffer].push_back(key);
}

} // namespace vekhost
