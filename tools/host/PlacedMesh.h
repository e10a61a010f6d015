#pragma once

#include <vector>

#include "Bounds.h"
#include "Document.h"

namespace vekhost {

/// The triangles of a loaded document in world coordinates, as the analyses read them: the
/// faces' triangles in face key order, then the meshes that no face covers (mesh files).
/// Three vertices per triangle, as the meshes hold them.
struct PlacedMesh {
    struct Range {
        int first = 0;
        int count = 0;
    };
    std::vector<Vec3> points;
    /// Unit surface normals; zero where the mesh has none.
    std::vector<Vec3> normals;
    /// The face key of each vertex, -1 for meshes without faces.
    std::vector<int> faces;
    /// Indexed by face key: the face's vertices in `points`.
    std::vector<Range> ranges;

    int triangleCount() const { return static_cast<int>(points.size() / 3); }
    Box3 bounds() const;

    /// Reads `SCScene::meshes` through `SCSceneRes::primitivesA` and `primALinks1`, placed by
    /// `SCScene::transforms` of the node in `links6a`. Ranges that leave their mesh are cut.
    static PlacedMesh of(const Document& document);
};

} // namespace vekhost
