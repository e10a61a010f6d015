#pragma once

#include "Document.h"
#include "Selection.h"
#include "Visibility.h"

namespace vekview {

/// Fills the batched buffers of `SCSceneRT` with what a frame draws, one entry per mesh or
/// polyline key that shows anything and once more for its lit-up part:
///
/// - `meshes`: `instances[i]` the placement of the key's node and the mesh key; `refs1[i]`
///   the node; `lists[i]` the vertex runs to draw, as first and count after one another
///   (adjacent faces' triangles merged into one run); `flags[i]` 1 for highlighted runs;
/// - `polylines`: the same for polyline keys, one run per edge (each a line strip).
///
/// Only what the visibility rule shows gets a run. Both buffers are cleared first and their
/// `dirty` flags reset; the entry count is `instances.size()` (`lists` may be longer, as
/// resizing grows it to the node key space).
void fillBatches(vekhost::Document& document, const vekhost::Visibility& visibility,
                 const Highlight& highlight);

} // namespace vekview
