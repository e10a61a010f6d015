#include "KeySpaces.h"

#include "Document.h"

namespace vekhost {

int lastKeyOf(Document& document, short keySpace) {
    switch (keySpace) {
    case MESHES:
        return document.scene->meshes.lastKey();
    case POLYLINES:
        return document.scene->polylines.lastKey();
    case LAYERS:
        return document.layers.lastKey();
    case NODES:
        return document.topo->nodes.lastKey();
    case FACES:
        return document.topo->faces.lastKey();
    case EDGES:
        return document.topo->edges.lastKey();
    case VERTICES:
        return document.topo->vertices.lastKey();
    case SURFACES:
        return document.topo->surfaces.lastKey();
    case CURVES:
        return document.topo->curves.lastKey();
    case PMI_ITEMS:
        return document.pmi->pmis.lastKey();
    case VIEWS:
        return document.pmi->views.lastKey();
    default:
        return -1;
    }
}

int DocumentResizer::lastKeyOf(const short& keySpace) {
    return vekhost::lastKeyOf(*document, keySpace);
}

} // namespace vekhost
