#pragma once

#include <vector>

#include "Document.h"

namespace vekhost {

/// What `SCSceneRT::visibility` leaves shown: the one rule for every program that draws a
/// document, so that they all draw the same things.
///
/// - A node shows when its bit in set 0 and those of every node above it in
///   `SCScene::hierarchy` are set.
/// - A face's triangles (`SCSceneRes::primitivesA`) show when its bit in set 2 is set; the
///   triangles of a mesh that no face covers (mesh files) when the mesh's bit in set 7 is;
///   an edge's points (`primitivesB`) when its bit in set 3 is. Each also needs the node of
///   its mesh or polyline (`SCScene::links6a`, `links7`) shown.
/// - A points primitive (`primitivesC`, no set of its own) shows when its node (`id`) does.
/// - A missing bit is a cleared one.
///
/// The shown nodes are worked out when it is made: make a new one after node bits or the
/// hierarchy change. The document must outlive it.
class Visibility {
public:
    explicit Visibility(const Document& document);

    bool nodeShown(int node) const;
    /// Whether the face's triangles show.
    bool faceShown(int face) const;
    /// Whether a mesh that no face covers shows whole.
    bool meshShown(int mesh) const;
    bool edgeShown(int edge) const;
    /// Whether the points primitive shows.
    bool pointsShown(int primitive) const;
    /// The nodes that no node lists as a child, in key order: where the hierarchy starts.
    const std::vector<int>& roots() const { return rootNodes; }

private:
    void findShownNodes();

    const veksg::SCScene& scene;
    const veksg::SCSceneRes& resources;
    const veksg::SCSceneRT& runtime;
    std::vector<bool> shownNodes;
    std::vector<int> rootNodes;
};

} // namespace vekhost
