#pragma once

#include <memory>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/Resources.h"
#include "veksg/Schema.h"

namespace veksg {

/// Rendering resources of a scene and the link (-1 when unset) and list tables that run
/// parallel to them. `resize` sizes those from the component's own primary tables and never
/// asks the resizer; `cleanup` is the base's and does nothing.
class VEKSG_API SCSceneRes : public Schema {
public:
    SCSceneRes();
    /// Member-wise in declaration order; textures and buffers are shared, not duplicated.
    SCSceneRes(const SCSceneRes&);
    SCSceneRes& operator=(const SCSceneRes&);
    ~SCSceneRes() override;

    short type() const override;
    /// Grows the parallel tables to the last keys of the tables they follow. Two links
    /// deliberately follow another table: `primBLinks1` is sized from `primitivesA`, and
    /// both C links grow only when `primitivesB` has entries.
    void resize(std::shared_ptr<SchemaResizer> resizer) override;

    Container<int, MMaterial> meshMaterials;
    Container<int, PLMaterial> polylineMaterials;
    Container<int, std::shared_ptr<Texture>> textures;
    Container<int, BBox> boxes;
    Container<int, OBBox> orientedBoxes;
    Container<int, Transform> transforms;
    Container<int, Transform> transformsB;
    Container<int, std::shared_ptr<VertexInfo>> vertexInfos;
    Container<int, std::shared_ptr<IndexInfo>> indexInfos;
    Container<int, int> indexLinks;
    Container<int, std::vector<int>> vertexLists;
    Container<int, PrimitiveInfo> primitivesA;
    Container<int, int> primALinks1;
    Container<int, std::vector<int>> indexLists1;
    Container<int, int> primALinks2;
    Container<int, int> primALinks3;
    Container<int, PrimitiveInfo> primitivesB;
    Container<int, int> primBLinks1;
    Container<int, std::vector<int>> indexLists2;
    Container<int, int> primBLinks2;
    Container<int, PrimitiveInfo> primitivesC;
    Container<int, int> primCLinks1;
    Container<int, std::vector<int>> indexLists3;
    Container<int, int> primCLinks2;
    Container<int, Font> fonts;
    Container<int, std::vector<int>> fontLists;
    Container<int, Text> texts;
    Container<int, int> textLinksA;
    Container<int, int> textLinksB;
};

} // namespace veksg
