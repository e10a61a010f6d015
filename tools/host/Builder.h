#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Animation.h"
#include "Bounds.h"
#include "Document.h"
#include "DocumentInfo.h"

namespace vekhost {

/// A run of vertices in a mesh or of points in a polyline.
struct Range {
    int first = 0;
    int count = 0;
};

/// What the readers hand over for one part: geometry in the part's own coordinates, shared
/// by every node that shows the part, and its boundary representation (empty for mesh files).
/// Indices in the B-rep lists are positions in this part's own lists.
struct PartGeometry {
    struct FaceData {
        int surface = -1;
        bool reversed = false;
        /// Three mesh vertices per triangle.
        Range triangles;
        std::vector<int> edges;
        Box3 box;
    };
    struct EdgeData {
        int curve = -1;
        /// The reader's curve kind; -1 for an edge without a curve.
        int kind = -1;
        int start = -1;
        int end = -1;
        /// The edge's points in `lines`, one strip per edge.
        Range points;
    };

    /// Triangles, three vertices each, in `vn`, in `vnc` (per-vertex colours) or in `vnt`
    /// (texture coordinates for `texture`); may be null.
    std::shared_ptr<veksg::Mesh> mesh;
    /// The image the mesh's texture coordinates point into; null for none.
    std::shared_ptr<veksg::Texture> texture;
    std::shared_ptr<veksg::Polyline> lines;
    /// Points without faces (PointCloud.h has the layout); may be null.
    std::shared_ptr<veksg::VertexInfo> points;
    std::vector<FaceData> faces;
    std::vector<EdgeData> edges;
    std::vector<Vec3> vertices;
    std::vector<int> surfaceKinds;
    std::vector<int> curveKinds;
    /// The part's box in its own coordinates, for readers that know fewer points than the
    /// mesh repeats; when not valid the builder fits one around the mesh and lines.
    OrientedBox bounds;
};

/// Vertices in a mesh, whichever layout holds them.
int vertexCount(const veksg::Mesh& mesh);

veksg::MMaterial materialFromColor(float red, float green, float blue, float alpha);

/// The first keys of the topology records that `DocumentBuilder::addPart` makes: the part's
/// faces and edges follow in the order of its lists.
struct PartKeys {
    int face = 0;
    int edge = 0;
    /// The mesh the node draws the part's triangles with, -1 for none.
    int mesh = -1;
};

/// The one place where read data becomes records of the data model. Readers add nodes
/// depth first (a parent before its children), parts to nodes, then call `complete`.
class DocumentBuilder {
public:
    explicit DocumentBuilder(Document& document) : doc(document) {}

    /// A node under `parent` (-1 for a root) placed by `world`; returns its key.
    int addNode(const std::wstring& name, int parent, const Matrix& world);
    /// Shows `part` at `node` with `material`; the part's geometry is shared, its topology
    /// records are the node's own.
    PartKeys addPart(int node, const std::shared_ptr<const PartGeometry>& part,
                     const veksg::MMaterial& material);
    void addAttribute(int node, const wchar_t* key, const std::wstring& value);
    /// The key of the layer with this name, made on first use.
    int layer(const std::wstring& name);
    void putOnLayer(int node, int layer);
    /// The file and the tessellation's deflection (0: none, the default tolerance stays); a
    /// tolerance the file states (`setInfo`) wins over the deflection.
    void setSource(const std::wstring& path, double tolerance);
    /// What the file tells about itself: SCInfo's numbers, attributes of the whole document
    /// (listing no node), and the external files, from key 0 in the order given.
    void setInfo(const SourceInfo& info);
    /// The external files (keys of `SCExtFile::files`) that the mesh's material draws on.
    void useFiles(int mesh, const std::vector<int>& files);
    /// The document's node animation (Animation.h); nodes must exist.
    void setAnimation(const AnimationData& animation);
    /// Node boxes of assemblies and the document-wide records; call once, after the last add.
    void complete();
    /// The 2D component, for readers of drawings (drawing/DrawingBuilder.h fills it).
    vek2d::SCScene2D& drawing() { return *doc.drawing; }

private:
    struct Bounds {
        Box3 box;
        OrientedBox oriented;
    };
    const Bounds& boundsOf(const PartGeometry& part);
    void addTopology(int node, const PartGeometry& part, int meshKey, int linesKey,
                     const veksg::MMaterial& material);

    Document& doc;
    std::vector<Matrix> worlds;
    std::vector<Box3> nodeBoxes;
    std::vector<int> partsOfNode;
    // Every part added, kept alive: their addresses key the two maps below, and a part freed
    // by its reader must not lend its address to the next one.
    std::vector<std::shared_ptr<const PartGeometry>> keptParts;
    std::unordered_map<const PartGeometry*, Bounds> bounds;
    std::unordered_map<const PartGeometry*, int> firstNodeOf;
    std::unordered_map<const PartGeometry*, int> vertexBuffers;
    bool statedTolerance = false;
    std::map<std::wstring, int> layerKeys;
};

} // namespace vekhost
