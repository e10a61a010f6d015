#pragma once

#include <memory>
#include <string>

#include "Reader.h"

namespace vekhost {

/// Whether Assimp reads files with this extension (given with its dot, any case).
bool isMeshExtension(const std::string& extension);

/// Reads mesh formats through Assimp: nodes, triangle and line meshes, materials.
std::unique_ptr<Reader> makeMeshReader(const std::string& path);

} // namespace vekhost
