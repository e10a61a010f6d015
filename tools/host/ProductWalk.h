#pragma once

#include <TDF_LabelSequence.hxx>

#include "Builder.h"
#include "CadShapes.h"

namespace vekhost {

/// Turns the product structure in `shapes`' document into records: one node per occurrence
/// (the assembly, every instance of a sub-assembly or part) with its name, placement, colour
/// and layers; each part's geometry made once from its meshed shape and shared by its
/// instances. Records in `shapes` the placed shape of every node, face and edge it makes.
/// `roots` are the document's top-level labels.
void walkProducts(const TDF_LabelSequence& roots, CadShapes& shapes, DocumentBuilder& builder);

} // namespace vekhost
