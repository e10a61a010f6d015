#pragma once

#include "Document.h"
#include "RecordsCheck.h"

namespace vekhost {

/// The PMI's relations and maps: every face, edge, node, annotation, datum, attribute,
/// view and section key they hold exists, an annotation and its node name each other, as do
/// a view and the annotations and nodes it shows; every box belongs to an annotation.
RecordFindings checkPmi(const Document& document);

} // namespace vekhost
