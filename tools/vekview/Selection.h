#pragma once

#include <vector>

#include "Document.h"

namespace vekview {

/// The list of `SCSceneRT::selection` that holds the selected keys of a key space: list k
/// holds key space k + 6, so the eleven lists cover key spaces 6 (meshes) to 16 (PMI).
constexpr std::size_t selectionList(int keySpace) {
    return static_cast<std::size_t>(keySpace - 6);
}
constexpr int meshKeys = 6;
constexpr int nodeKeys = 10;
constexpr int faceKeys = 11;
constexpr int edgeKeys = 12;
constexpr int annotationKeys = 16;

/// What the selection lights up: one flag per face, mesh and edge key.
struct Highlight {
    std::vector<bool> faces;
    std::vector<bool> meshes;
    std::vector<bool> edges;
    bool face(int key) const { return has(faces, key); }
    bool mesh(int key) const { return has(meshes, key); }
    bool edge(int key) const { return has(edges, key); }

private:
    static bool has(const std::vector<bool>& bits, int key) {
        return key >= 0 && static_cast<std::size_t>(key) < bits.size() &&
               bits[static_cast<std::size_t>(key)];
    }
};

/// The selection as the document's run-time scene holds it.
class Selection {
public:
    explicit Selection(vekhost::Document& document) : doc(document) {}

    void clear();
    /// Makes `key` of `keySpace` the selection, or with `add` adds it (and removes it when
    /// it was selected already).
    void select(int keySpace, int key, bool add = false);
    /// Adds keys of `keySpace` to the selection; keys already selected stay selected.
    void add(int keySpace, const std::vector<int>& keys);
    /// Makes an annotation the selection together with the faces and edges it applies to,
    /// so that its geometry lights up; nothing for a key without an annotation.
    void selectAnnotation(int annotation);
    const std::vector<int>& keys(int keySpace) const;
    bool empty() const;

    /// The node the model tree shows for the selection: the first selected node, else the
    /// node of the first selected face, edge or mesh; -1 for none.
    int focusNode() const;

    /// Faces, meshes and edges to light up: the selected ones; the whole of every selected
    /// node and the nodes below it; the edges that bound a selected face.
    Highlight highlight() const;

private:
    vekhost::Document& doc;
};

/// The node a face, edge or mesh belongs to, -1 when the key has none.
int nodeOfFace(const vekhost::Document& document, int face);
int nodeOfEdge(const vekhost::Document& document, int edge);
int nodeOfMesh(const vekhost::Document& document, int mesh);

} // namespace vekview
