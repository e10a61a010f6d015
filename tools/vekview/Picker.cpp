#include "Picker.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vekview {

namespace {
// How far from the cursor, in pixels, an edge is still taken.
constexpr int edgeReach = 4;

const std::vector<int>& listOf(const veksg::Hierarchy& lists, int key) {
    static const std::vector<int> none;
    return key >= 0 && key < lists.size() ? lists.getValue(key) : none;
}

int linkOf(const veksg::Container<int, int>& links, int key) {
    return key >= 0 && key < links.size() ? links.getValue(key) : -1;
}

bool holds(const veksg::PrimitiveInfo& range, int index) {
    return index >= range.first && index - range.first < range.count;
}

// The world point at pixel (x, y) from the bottom left and window depth `depth`.
Vec3 unproject(const FrameSetup& setup, double x, double y, double depth) {
    const double aspect = static_cast<double>(setup.width) / std::max(setup.height, 1);
    const Matrix toWorld = inverse(setup.camera->projection(aspect) * setup.camera->view());
    const Vec4 clip{2 * (x + 0.5) / setup.width - 1, 2 * (y + 0.5) / setup.height - 1,
                    2 * depth - 1, 1};
    const Vec4 world = transform(toWorld, clip);
    const double w = std::fabs(world[3]) > 1e-300 ? world[3] : 1;
    return {world[0] / w, world[1] / w, world[2] / w};
}
} // namespace

namespace {
// The primitive of `key` (a mesh or polyline key) whose range holds `index`: among the
// primitives of the key's node (`ofNode`), those whose link names the key.
int primitiveHolding(const veksg::Hierarchy& ofNode, int node,
                     const veksg::Container<int, veksg::PrimitiveInfo>& ranges,
                     const veksg::Container<int, int>& links, int key, int index) {
    for (const int primitive : listOf(ofNode, node))
        if (primitive >= 0 && primitive < ranges.size() && linkOf(links, primitive) == key &&
            holds(ranges.getValue(primitive), index))
            return primitive;
    return -1;
}
} // namespace

int faceAtVertex(const vekhost::Document& document, int mesh, int vertex) {
    const veksg::SCSceneRes& res = *document.resources;
    return primitiveHolding(document.topo->nodeLists4, linkOf(document.scene->links6a, mesh),
                            res.primitivesA, res.primALinks1, mesh, vertex);
}

int edgeAtPoint(const vekhost::Document& document, int polyline, int point) {
    const veksg::SCSceneRes& res = *document.resources;
    return primitiveHolding(document.topo->nodeLists5, linkOf(document.scene->links7, polyline),
                            res.primitivesB, res.primBLinks2, polyline, point);
}

Pick Picker::pick(const vekhost::Document& document, const GpuScene& gpu, Renderer& renderer,
                  const FrameSetup& setup, int x, int y) {
    target.resize(setup.width, setup.height);
    target.bind();
    renderer.drawIds(document, gpu, setup);
    const int row = setup.height - 1 - y;
    const IdBlock faces = target.read(0, x, row, 0);
    const IdBlock edges = target.read(1, x, row, edgeReach);
    Pick pick;
    const auto face = faces.id(x, row);
    if (face[0] != 0) {
        pick.hit = true;
        pick.mesh = static_cast<int>(face[0] - 1);
        pick.face = faceAtVertex(document, pick.mesh, static_cast<int>(face[1]));
        pick.node = linkOf(document.scene->links6a, pick.mesh);
        pick.point = unproject(setup, x, row, faces.depth(x, row));
    }
    // The nearest edge pixel around the cursor.
    int best = std::numeric_limits<int>::max();
    for (int dy = -edgeReach; dy <= edgeReach; ++dy) {
        for (int dx = -edgeReach; dx <= edgeReach; ++dx) {
            const int far = dx * dx + dy * dy;
            if (far >= best || far > edgeReach * edgeReach) continue;
            const auto edge = edges.id(x + dx, row + dy);
            if (edge[0] == 0) continue;
            const int found =
                edgeAtPoint(document, static_cast<int>(edge[0] - 1), static_cast<int>(edge[1]));
            if (found < 0) continue;
            best = far;
            pick.edge = found;
            pick.edgePoint = unproject(setup, x + dx, row + dy, edges.depth(x + dx, row + dy));
        }
    }
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return pick;
}

} // namespace vekview
