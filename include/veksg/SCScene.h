#pragma once

#include <memory>

#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/Hierarchy.h"
#include "veksg/Resources.h"
#include "veksg/Schema.h"

namespace veksg {

/// The tessellated scene: shared meshes, polylines and textures, their materials, boxes,
/// transforms, fonts, texts, a hierarchy and integer link tables (-1 for no link).
class VEKSG_API SCScene : public Schema {
public:
    SCScene();
    /// Member-wise in declaration order; meshes, polylines and textures are shared.
    SCScene(const SCScene&);
    SCScene& operator=(const SCScene&);
    ~SCScene() override;

    short type() const override;
    /// Asks key spaces 6, 7 and 8, in that order, for the link tables; sizes `hierarchy`
    /// from `fonts` and the text links from `texts`.
    void resize(std::shared_ptr<SchemaResizer> resizer) override;
    /// Empties every table except `links8`. The lists inside each shared mesh and polyline
    /// are emptied before the reference is dropped, so other holders see them empty too.
    void cleanup() override;

    Container<int, std::shared_ptr<Mesh>> meshes;
    Container<int, MMaterial> meshMaterials;
    Container<int, std::shared_ptr<Polyline>> polylines;
    Container<int, PLMaterial> polylineMaterials;
    Container<int, BBox> boxes;
    Container<int, Transform> transforms;
    Container<int, vekmath::Tuple<float, 3>> points;
    Container<int, std::shared_ptr<Texture>> textures;
    Container<int, int> links6a;
    Container<int, int> links7;
    /// Survives `cleanup`.
    Container<int, int> links8;
    Container<int, int> links6b;
    Container<int, Font> fonts;
    /// Sized after `fonts`, not after a node table.
    Hierarchy hierarchy;
    Container<int, Text> texts;
    Container<int, int> textLinksA;
    Container<int, int> textLinksB;
};

} // namespace veksg
