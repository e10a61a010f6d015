#pragma once

#include <string>
#include <vector>

namespace vekview {

struct Options {
    /// Files to view, the first shown first; none for the built-in sample.
    std::vector<std::string> files;
    /// Commands to run instead of the window; empty for the interactive viewer.
    std::string script;
    /// Chordal deflection of CAD tessellation; 0 picks one from the model's size.
    double deflection = 0;
    bool help = false;
};

/// Throws std::invalid_argument naming the offending argument.
Options parseOptions(int argc, const char* const* argv);
const char* usage();

} // namespace vekview
