#pragma once

#include <memory>
#include <string>

#include "CadFile.h"
#include "Reader.h"

namespace vekhost {

/// Reads through Open CASCADE's document framework, so that product structure, names,
/// colours and layers come along, and tessellates with its mesher. `path` is ignored for
/// the sample.
std::unique_ptr<Reader> makeCadReader(const std::string& path, CadFormat format,
                                      const LoadOptions& options);

} // namespace vekhost
