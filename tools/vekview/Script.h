#pragma once

#include <iosfwd>

#include "Options.h"

namespace vekview {

/// Runs the commands of `options.script` against a hidden window and returns the exit
/// status: 0 when every line ran, 1 when a file does not load, a picture cannot be written or
/// no window opens, 2 for a bad line. Every line is checked before the first runs. Results
/// go to `out`; a failure prints one line to `err` ("vekview: SCRIPT:LINE: cause", or for a
/// file "vekview: FILE: cause") and ends the run.
int runScript(const Options& options, std::ostream& out, std::ostream& err);

} // namespace vekview
