#pragma once

#include <TDocStd_Document.hxx>

namespace vekhost {

/// Fills an empty XDE document with the built-in sample: a flanged bolt with a washer and
/// a nut, as an assembly with names, colours, a coloured face and a layer.
void buildSample(const Handle(TDocStd_Document) & document);

} // namespace vekhost
