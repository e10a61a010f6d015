#pragma once

#include <assimp/scene.h>

#include <cstdint>
#include <memory>

#include "veksg/veksg.h"

namespace vekhost {

/// Gives each mesh that has vertices but no faces one point per vertex, as Assimp keeps
/// points, so that its validation takes point clouds; throws LoadError for a mesh that claims
/// more points than `bytes` of input can hold.
void facePointClouds(aiScene& scene, std::uint64_t bytes);

/// The points of a mesh of points, in its own coordinates (PointCloud.h has the layout); points
/// with a coordinate that is not a finite number are left out.
std::shared_ptr<veksg::VertexInfo> pointsOf(const aiMesh& mesh);

} // namespace vekhost
