#include "PlacedMesh.h"

#include <algorithm>
#include <cmath>

#include "Builder.h"

namespace vekhost {

namespace {
const float* vertexOf(const veksg::Mesh& mesh, std::size_t i, const float** normal) {
    if (i < mesh.vn.size()) return *normal = mesh.vn[i].normal, mesh.vn[i].vertex;
    i -= mesh.vn.size();
    if (i < mesh.vnc.size()) return *normal = mesh.vnc[i].normal, mesh.vnc[i].vertex;
    i -= mesh.vnc.size();
    return *normal = mesh.vnt[i].normal, mesh.vnt[i].vertex;
}

Vec3 toVec(const float* p) {
    return {p[0], p[1], p[2]};
}

Matrix placementOf(const veksg::SCScene& scene, int node) {
    Matrix place;
    if (node < 0 || node >= scene.transforms.size() || !scene.transforms.getValue(node).valid)
        return place;
    const auto& elements = scene.transforms.getValue(node).matrix;
    for (std::size_t i = 0; i < 16; ++i)
        place.m[i] = elements[static_cast<int>(i)];
    return place;
}

// Normals move with the inverse transpose of the linear part: its cofactors, turned back
// where the placement mirrors.
Matrix normalTransform(const Matrix& place) {
    const auto& m = place.m;
    auto at = [&](std::size_t row, std::size_t column) { return m[column * 4 + row]; };
    Matrix out;
    for (std::size_t r = 0; r < 3; ++r)
        for (std::size_t c = 0; c < 3; ++c) {
            const std::size_t r1 = (r + 1) % 3, r2 = (r + 2) % 3, c1 = (c + 1) % 3,
                              c2 = (c + 2) % 3;
            out.m[c * 4 + r] = at(r1, c1) * at(r2, c2) - at(r1, c2) * at(r2, c1);
        }
    const double det = at(0, 0) * out.m[0] + at(0, 1) * out.m[4] + at(0, 2) * out.m[8];
    if (det < 0)
        for (double& element : out.m)
            element = -element;
    return out;
}

Vec3 unit(const Vec3& v) {
    const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    if (!(length > 0) || !std::isfinite(length)) return {0, 0, 0};
    return {v[0] / length, v[1] / length, v[2] / length};
}

class Collector {
public:
    Collector(const Document& document, PlacedMesh& out) : scene(*document.scene), out(out) {}

    // Whole triangles of `first` to `first + count - 1`, cut to the mesh.
    void add(int meshKey, long long first, long long count, int face) {
        if (meshKey < 0 || meshKey >= scene.meshes.size() || !scene.meshes.getValue(meshKey))
            return;
        const veksg::Mesh& mesh = *scene.meshes.getValue(meshKey);
        const int node = meshKey < scene.links6a.size() ? scene.links6a.getValue(meshKey) : -1;
        const Matrix place = placementOf(scene, node);
        const Matrix turn = normalTransform(place);
        const long long total = vertexCount(mesh);
        const long long begin = std::clamp<long long>(first, 0, total);
        const long long end = std::min<long long>(total, begin + std::max<long long>(count, 0));
        const long long stop = begin + (end - begin) / 3 * 3;
        for (long long i = begin; i < stop; ++i) {
            const float* normal = nullptr;
            const float* vertex = vertexOf(mesh, static_cast<std::size_t>(i), &normal);
            out.points.push_back(place.point(toVec(vertex)));
            out.normals.push_back(unit(turn.vector(toVec(normal))));
            out.faces.push_back(face);
        }
    }

private:
    const veksg::SCScene& scene;
    PlacedMesh& out;
};
} // namespace

Box3 PlacedMesh::bounds() const {
    Box3 box;
    for (const Vec3& p : points)
        box.add(p);
    return box;
}

PlacedMesh PlacedMesh::of(const Document& document) {
    PlacedMesh out;
    const veksg::SCSceneRes& resources = *document.resources;
    const veksg::SCScene& scene = *document.scene;
    Collector collect(document, out);
    std::vector<bool> byFaces(static_cast<std::size_t>(std::max(scene.meshes.size(), 0)));
    out.ranges.resize(static_cast<std::size_t>(std::max(resources.primitivesA.size(), 0)));
    for (int face = 0; face < resources.primitivesA.size(); ++face) {
        const int mesh =
            face < resources.primALinks1.size() ? resources.primALinks1.getValue(face) : -1;
        if (mesh < 0 || mesh >= scene.meshes.size()) continue;
        byFaces[static_cast<std::size_t>(mesh)] = true;
        const veksg::PrimitiveInfo& range = resources.primitivesA.getValue(face);
        const int first = static_cast<int>(out.points.size());
        collect.add(mesh, range.first, range.count, face);
        out.ranges[static_cast<std::size_t>(face)] = {first,
                                                      static_cast<int>(out.points.size()) - first};
    }
    for (int mesh = 0; mesh < scene.meshes.size(); ++mesh)
        if (!byFaces[static_cast<std::size_t>(mesh)]) collect.add(mesh, 0, 1LL << 40, -1);
    return out;
}

} // namespace vekhost
