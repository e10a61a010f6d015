#include "Options.h"

#include <cmath>
#include <cstring>
#include <stdexcept>

namespace vekview {

namespace {
// The value after option `name`, which must be there and not be empty.
const char* valueOf(int argc, const char* const* argv, int& i) {
    const char* name = argv[i];
    if (i + 1 >= argc || argv[i + 1][0] == '\0')
        throw std::invalid_argument(std::string(name) + " needs a value");
    return argv[++i];
}
} // namespace

const char* usage() {
    return "usage: vekview [--deflection X] [--script FILE] [FILE...]\n"
           "Shows CAD files (STEP, IGES, BREP) and mesh files (OBJ, STL, PLY, glTF/GLB, FBX,\n"
           "3DS, DAE and the other formats Assimp reads) in a window, through the veksg data\n"
           "model. Without FILE it shows a built-in sample assembly.\n"
           "  --deflection X  chordal deflection of CAD tessellation, in model units\n"
           "                  (default: a thousandth of the model's diagonal)\n"
           "  --script FILE   run the commands in FILE, one per line, without a visible\n"
           "                  window, and exit (see tools/vekview/README.md)\n"
           "Exit status: 0 done, 1 a file failed to load, a picture could not be written or\n"
           "no window could be opened, 2 bad arguments or a bad script line.\n";
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
        } else if (std::strcmp(arg, "--help") == 0 || std::strcmp(arg, "-h") == 0) {
            options.help = true;
        } else if (std::strcmp(arg, "--script") == 0) {
            options.script = valueOf(argc, argv, i);
        } else if (std::strcmp(arg, "--deflection") == 0) {
            const char* text = valueOf(argc, argv, i);
            char* end = nullptr;
            options.deflection = std::strtod(text, &end);
            if (*end != '\0' || !(options.deflection > 0) || !std::isfinite(options.deflection))
                throw std::invalid_argument("--deflection needs a positive number");
        } else {
            throw std::invalid_argument(std::string("unknown option ") + arg);
        }
    }
    return options;
}

} // namespace vekview
