#include "Options.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace vekload {

namespace {
double positiveNumber(const char* option, const char* text) {
    char* end = nullptr;
    const double value = text ? std::strtod(text, &end) : 0.0;
    if (!text || end == text || *end != '\0' || !(value > 0) || !std::isfinite(value))
        throw std::invalid_argument(std::string(option) + " needs a positive number");
    return value;
}
} // namespace

const char* usage() {
    return "usage: vekload [--json] [--check] [--deflection X] [--timeout S] [--no-isolation] "
           "[FILE...]\n"
           "Loads CAD files (STEP, IGES, BREP) and mesh files (OBJ, STL, PLY, glTF/GLB, FBX,\n"
           "3DS, DAE and the other formats Assimp reads) into the veksg data model and\n"
           "summarises each. Without FILE it loads a built-in sample assembly.\n"
           "  --json          print the summaries as one JSON document\n"
           "  --check         verify every cross-reference of each loaded document\n"
           "  --deflection X  chordal deflection of CAD tessellation, in model units\n"
           "                  (default: a thousandth of the model's diagonal)\n"
           "  --timeout S     give up on a file after S seconds (default 300)\n"
           "  --no-isolation  load in this process instead of one child process per file\n"
           "Exit status: 0 all loaded (and consistent), 1 a file failed to load,\n"
           "2 bad arguments, 3 a check found problems.\n";
}

Options parseOptions(int argc, const char* const* argv) {
    Options options;
    bool filesOnly = false;
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        if (filesOnly || arg[0] != '-' || std::strcmp(arg, "-") == 0) {
            options.files.emplace_back(arg);
        } else if (std::strcmp(arg, "--") == 0) {
            filesOnly = true;
        } else if (std::strcmp(arg, "--json") == 0) {
            options.json = true;
        } else if (std::strcmp(arg, "--check") == 0) {
            options.check = true;
        } else if (std::strcmp(arg, "--no-isolation") == 0) {
            options.isolate = false;
        } else if (std::strcmp(arg, "--help") == 0 || std::strcmp(arg, "-h") == 0) {
            options.help = true;
        } else if (std::strcmp(arg, "--deflection") == 0) {
            options.deflection = positiveNumber(arg, i + 1 < argc ? argv[++i] : nullptr);
        } else if (std::strcmp(arg, "--timeout") == 0) {
            options.timeout = positiveNumber(arg, i + 1 < argc ? argv[++i] : nullptr);
        } else {
            throw std::invalid_argument(std::string("unknown option ") + arg);
        }
    }
    return options;
}

} // namespace vekload
