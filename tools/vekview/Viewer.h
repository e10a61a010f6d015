#pragma once

#include "Options.h"

namespace vekview {

/// The interactive viewer: opens a window on the first file (or the sample) and runs until
/// it is closed. Returns the exit status: 0, or 1 when the first file does not load or no
/// window opens (one line on stderr says why).
int runViewer(const Options& options);

} // namespace vekview
