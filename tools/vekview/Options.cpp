#include "Options.h"

#include <cmath>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vekview {

namespace {
// The value after the option at `i`, which must be there and not be empty.
std::string valueOf(const std::vector<std::string_view>& args, std::size_t& i) {
    if (i + 1 >= args.size() || args[i + 1].empty())
        throw std::invalid_argument(std::string(args[i]) + " needs a value");
    return std::string(args[++i]);
}

double positive(const std::string& text, const char* option) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (*end != '\0' || !(value > 0) || !std::isfinite(value))
        throw std::invalid_argument(std::string(option) + " needs a positive number");
    return value;
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
    const std::vector<std::string_view> args(argv + 1, argv + argc);
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string_view arg = args[i];
        if (arg == "--") {
            options.files.insert(options.files.end(), args.begin() + static_cast<long>(i) + 1,
                                 args.end());
            break;
        }
        // "-" alone is a file name like any word without a dash.
        if (arg.size() < 2 || arg.front() != '-')
            options.files.emplace_back(arg);
        else if (arg == "--help" || arg == "-h")
            options.help = true;
        else if (arg == "--script")
            options.script = valueOf(args, i);
        else if (arg == "--deflection")
            options.deflection = positive(valueOf(args, i), "--deflection");
        else
            throw std::invalid_argument("unknown option " + std::string(arg));
    }
    return options;
}

} // namespace vekview
