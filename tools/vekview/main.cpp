// vekview: shows CAD and mesh files through the veksg data model in a window, or runs a
// script of viewer commands without one.
#include <cstdio>
#include <iostream>
#include <stdexcept>

#include "Options.h"
#include "Script.h"
#include "Viewer.h"

int main(int argc, char** argv) {
    vekview::Options options;
    try {
        options = vekview::parseOptions(argc, argv);
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "vekview: %s\n%s", error.what(), vekview::usage());
        return 2;
    }
    if (options.help) {
        std::fputs(vekview::usage(), stdout);
        return 0;
    }
    if (!options.script.empty()) return vekview::runScript(options, std::cout, std::cerr);
    return vekview::runViewer(options);
}
