#pragma once

#include "CadShapes.h"
#include "Document.h"
#include "PmiReader.h"
#include "ViewCommands.h"

namespace vekhost {

/// Turns the saved views of `shapes`' document into `View`s of `document.pmi`: the camera
/// (position, target, up), the nodes and annotations (`annotations`, from `readPmi`) it
/// shows, and its clipping planes as `Section`s; each view's camera and section states go
/// into `document.states`. Call after `readPmi`.
void readSavedViews(const CadShapes& shapes, const PmiKeys& annotations, Document& document);

} // namespace vekhost
