#pragma once

#include "Check.h"
#include "vek2d/SCScene2D.h"

namespace vekhost {

/// Verifies a drawing against the conventions of Drawing.h and adds what it finds to
/// `result`: each entity's id is its key; its view, colour, layer and record (ellipse,
/// hatch, text) exist; each text's font and colour exist; the views of a sheet and the sheet
/// of a view agree; every entity is on exactly one layer; layer names and states pair up;
/// every stored number is finite.
void checkDrawing(const vek2d::SCScene2D& drawing, CheckResult& result);

} // namespace vekhost
