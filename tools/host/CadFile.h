#pragma once

#include <TDF_LabelSequence.hxx>
#include <TDocStd_Document.hxx>

#include <string>

#include "DocumentInfo.h"
#include "Progress.h"

namespace vekhost {

enum class CadFormat { Step, Iges, Brep, Sample };

/// The name reports give the format: "STEP", "IGES", "BREP", "sample".
const char* formatName(CadFormat format);

/// A new empty document of Open CASCADE's document framework (XDE), for one file.
opencascade::handle<TDocStd_Document> newCadDocument();
/// Closes a document that newCadDocument made, freeing everything it holds.
void closeCadDocument(const Handle(TDocStd_Document) & document);

/// Reads the file at `path` into an empty `document`, with its product structure, names,
/// colours and layers (`path` is ignored for the built-in sample). Returns the labels of the
/// top-level shapes; throws LoadError when the file is unreadable, damaged or holds no shape.
/// `info`, when given, receives what the file tells about itself (CadHeader.h).
TDF_LabelSequence readCadFile(const std::string& path, CadFormat format,
                              const Handle(TDocStd_Document) & document, Progress& progress,
                              SourceInfo* info = nullptr);

} // namespace vekhost
