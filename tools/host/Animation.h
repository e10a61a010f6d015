#pragma once

#include <vector>

#include "Bounds.h"
#include "Document.h"

// One node animation in the document:
// - `SCAnimation::keys`: the key times in milliseconds from the animation's start, each once;
// - `SCSceneTopo::nodeRefs2[n]`: the column of node n, -1 for a node the animation does not
//   move; columns follow the node keys upwards, 0 for the lowest animated node;
// - `SCAnimation::transforms[k * N + c]`: the world placement of the node in column c at the
//   k-th key in ascending time (N animated nodes), `valid` set.
// The animated nodes are those with an animation channel and every node below them.
namespace vekhost {

/// An animation as a reader hands it to the builder.
struct AnimationData {
    /// Milliseconds, ascending, each once.
    std::vector<int> keys;
    /// Node keys, ascending.
    std::vector<int> nodes;
    /// World placements, `nodes.size()` per key, key after key.
    std::vector<Matrix> placements;
};

/// Placements beyond this many are refused: the product of keys and nodes is not bounded by
/// the size of the file.
constexpr std::size_t maxAnimationPlacements = std::size_t(1) << 20;

/// Writes `animation` into an empty SCAnimation and `nodeRefs2`.
void writeAnimation(Document& document, const AnimationData& animation);

/// The node of each column, in column order.
std::vector<int> animatedNodes(const Document& document);

/// Where the animation puts its nodes at one time. Between two keys each node's world
/// placement is interpolated: translation and scale linearly, rotation by spherical linear
/// interpolation of unit quaternions along the shorter arc. Before the first key and after the
/// last the end placements hold.
class AnimationPose {
public:
    AnimationPose(const Document& document, double milliseconds);
    /// The node's world placement at the time; null for a node the animation does not move.
    const Matrix* placement(int node) const;

private:
    std::vector<int> columnOf;
    std::vector<Matrix> placements;
};

/// The box around every animated node's oriented box (`SCSceneRes::orientedBoxes`) carried
/// from its resting placement (`SCScene::transforms`) to its placement at each key; not valid
/// without an animation.
Box3 animationBounds(const Document& document);

} // namespace vekhost
