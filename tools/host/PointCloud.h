#pragma once

#include <cstdint>
#include <memory>

#include "veksg/veksg.h"

// Points without faces (scans, point clouds) as `SCSceneRes` keeps them:
// - `vertexInfos[v]`: one buffer per part, shared by every node that shows it; `stride`
//   counts floats per point: 3 (x, y, z in the part's own coordinates) or 7 (then r, g, b, a
//   follow, each 0 to 1); `count` points;
// - `primitivesC[p]`: one points primitive per node that shows them: `id` the node, `first`
//   and `count` in points of its buffer, `mode` 0 (points), `color` the material's diffuse
//   colour, for points without colours of their own;
// - `primCLinks1[p]`: the primitive's buffer; `vertexLists[v]`: the primitives that draw
//   from buffer v.
namespace vekhost {

namespace points {
constexpr int plainStride = 3;
constexpr int colouredStride = 7;
/// Drawing mode of a points primitive, as OpenGL numbers it.
constexpr std::uint16_t mode = 0;
} // namespace points

/// Appends `buffer` to `vertexInfos`; returns its key.
int addVertexBuffer(veksg::SCSceneRes& resources, const std::shared_ptr<veksg::VertexInfo>& buffer);

/// Appends a primitive that draws every point of buffer `buffer` at `node`.
void addPointPrimitive(veksg::SCSceneRes& resources, int node, int buffer,
                       const veksg::Point3& color);

} // namespace vekhost
