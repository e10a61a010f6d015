#pragma once

#include "veksg/Schema.h"

namespace vekhost {

struct Document;

/// What each key-space code means in these hosts; tools/host/README.md has the table.
enum KeySpace : short {
    MESHES = 6,     // SCScene::meshes
    POLYLINES = 7,  // SCScene::polylines
    LAYERS = 8,     // Document::layers
    NODES = 10,     // SCSceneTopo::nodes
    FACES = 11,     // SCSceneTopo::faces
    EDGES = 12,     // SCSceneTopo::edges
    VERTICES = 13,  // SCSceneTopo::vertices
    SURFACES = 14,  // SCSceneTopo::surfaces
    CURVES = 15,    // SCSceneTopo::curves
    PMI_ITEMS = 16, // SCPmi::pmis
    VIEWS = 17,     // SCPmi::views
};

/// The last key of the document's primary table for a key space; -1 when it is empty or
/// the code means nothing here.
int lastKeyOf(Document& document, short keySpace);

/// Answers every key space from the document's primary tables, as they are when asked.
class DocumentResizer : public veksg::SchemaResizer {
public:
    explicit DocumentResizer(Document& document) : document(&document) {}
    int lastKeyOf(const short& keySpace) override;

private:
    Document* document;
};

} // namespace vekhost
