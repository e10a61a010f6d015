#pragma once

#include <assimp/scene.h>

#include <vector>

#include "Animation.h"

namespace vekhost {

/// An Assimp matrix (row after row) in the data model's element order.
Matrix fromAssimp(const aiMatrix4x4& a);

/// A node of Assimp's scene as the mesh reader added it: its key is its position in the list.
struct SceneNode {
    const aiNode* node = nullptr;
    /// Key of the parent, -1 for the root.
    int parent = -1;
    /// Resting world placement.
    Matrix world;
};

/// Samples the scene's first animation that moves nodes: every channel at every key time of
/// every channel, at the file's own time (positions and scales linear between their keys,
/// rotations by spherical interpolation; keys that round to one millisecond are one), nodes
/// by their first namesake in `nodes`, world placements under `root` (the placement above the
/// scene's root). Empty for a scene without such an animation;
/// throws LoadError for a key time that whole milliseconds in an int cannot hold and for more
/// than `maxAnimationPlacements` placements.
AnimationData sampleAnimation(const aiScene& scene, const std::vector<SceneNode>& nodes,
                              const Matrix& root);

} // namespace vekhost
