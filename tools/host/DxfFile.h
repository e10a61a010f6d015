#pragma once

#include <memory>
#include <string>

#include "Reader.h"

namespace vekhost {

/// A DXF drawing into the document's `drawing` component (drawing/DxfReader.h); the 3D
/// components stay empty.
std::unique_ptr<Reader> makeDxfReader(const std::string& path);

} // namespace vekhost
