#pragma once

#include "CadShapes.h"
#include "Document.h"
#include "PmiReader.h"

namespace vekhost {

/// The command ids under which a saved view's states are filed in `SCStates::typeStates`
/// (one sequence per view key): its camera, then its cut when it has clipping planes.
constexpr int viewCameraCommand = 1;
constexpr int viewSectionCommand = 2;

/// Turns the saved views of `shapes`' document into `View`s of `document.pmi`: the camera
/// (position, target, up), the nodes and annotations (`annotations`, from `readPmi`) it
/// shows, and its clipping planes as `Section`s; each view's camera and section states go
/// into `document.states`. Call after `readPmi`.
void readSavedViews(const CadShapes& shapes, const PmiKeys& annotations, Document& document);

} // namespace vekhost
