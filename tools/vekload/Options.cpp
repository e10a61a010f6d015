#include "Options.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "DrawingRender.h"
#include "Png.h"

namespace vekload {

namespace {
double positiveNumber(const char* option, const char* text) {
    char* end = nullptr;
    const double value = text ? std::strtod(text, &end) : 0.0;
    if (!text || end == text || *end != '\0' || !(value > 0) || !std::isfinite(value))
        throw std::invalid_argument(std::string(option) + " needs a positive number");
    return value;
}

double anyNumber(const char* option, const char* text) {
    char* end = nullptr;
    const double value = text ? std::strtod(text, &end) : 0.0;
    if (!text || end == text || *end != '\0' || !std::isfinite(value))
        throw std::invalid_argument(std::string(option) + " needs a number");
    return value;
}

// A whole decimal number from `low` to `high`; `rest` receives what follows it.
bool wholeNumber(const char* text, long low, long high, int& value, const char** rest) {
    if (!text || *text < '0' || *text > '9') return false;
    char* end = nullptr;
    errno = 0;
    const long number = std::strtol(text, &end, 10);
    if (errno != 0 || number < low || number > high) return false;
    value = static_cast<int>(number);
    *rest = end;
    return true;
}

int viewKey(const char* text) {
    int key = 0;
    const char* rest = nullptr;
    if (!wholeNumber(text, 0, 6, key, &rest) || *rest != '\0')
        throw std::invalid_argument("--view needs a preset from 0 to 6");
    return key;
}

void pictureSize(const char* text, int& width, int& height) {
    constexpr long largest = 8192;
    const char* rest = nullptr;
    if (!wholeNumber(text, 1, largest, width, &rest) || *rest != 'x' ||
        !wholeNumber(rest + 1, 1, largest, height, &rest) || *rest != '\0')
        throw std::invalid_argument("--size needs WIDTHxHEIGHT, each from 1 to 8192 pixels");
}
// False for the first of two words, true for the second.
bool choice(const char* option, const char* text, const char* first, const char* second) {
    if (text && std::strcmp(text, first) == 0) return false;
    if (text && std::strcmp(text, second) == 0) return true;
    throw std::invalid_argument(std::string(option) + " needs " + first + " or " + second);
}

// X,Y,Z[,MIN]: the pull direction and the minimum draft.
void draftSettings(const char* text, AnalysisRequest& request) {
    double values[4] = {0, 0, 0, request.draftMinimum};
    int count = 0;
    bool good = text != nullptr;
    for (const char* at = text; good;) {
        char* end = nullptr;
        const double value = std::strtod(at, &end);
        good = end != at && std::isfinite(value) && count < 4 && (*end == ',' || *end == '\0');
        if (good) values[count++] = value;
        if (!good || *end == '\0') break;
        at = end + 1;
    }
    const bool pulls = values[0] != 0 || values[1] != 0 || values[2] != 0;
    if (!good || count < 3 || !pulls || !(values[3] >= 0 && values[3] < 90))
        throw std::invalid_argument(
            "--draft needs X,Y,Z[,MIN]: a pull direction and a minimum draft in degrees from 0 "
            "to 90");
    request.draft = true;
    request.pull = {values[0], values[1], values[2]};
    request.draftMinimum = values[3];
}

// The value of an option whose value may be left out: taken when it reads as a number.
bool optionalNumber(const char* text, double& value) {
    if (!text) return false;
    char* end = nullptr;
    const double number = std::strtod(text, &end);
    if (end == text || *end != '\0' || !std::isfinite(number) || number < 0) return false;
    value = number;
    return true;
}
} // namespace

const char* usage() {
    return "usage: vekload [--json] [--check] [--deflection X] [--timeout S] [--no-isolation]\n"
           "               [--png OUT [--view K] [--size WxH] [--time MS] [--pmi-view NAME]]\n"
           "               [--drawing OUT [--projection first|third] [--hidden exact|polygonal]]\n"
           "               [--save OUT.vks [--level L]]\n"
           "               [--draft X,Y,Z[,MIN]] [--thickness [MIN]] [--holes] [--compare REF]\n"
           "               [FILE...]\n"
           "Loads CAD files (STEP, IGES, BREP), mesh files (OBJ, STL, PLY, glTF/GLB, FBX,\n"
           "3DS, DAE and the other formats Assimp reads), DXF drawings and snapshots (VKS)\n"
           "into the veksg data model and summarises each. Without FILE it loads a built-in\n"
           "sample assembly.\n"
           "  --json          print the summaries as one JSON document\n"
           "  --check         verify every cross-reference of each loaded document\n"
           "  --deflection X  chordal deflection of CAD tessellation, in model units\n"
           "                  (default: a thousandth of the model's diagonal)\n"
           "  --timeout S     give up on a file after S seconds (default 300)\n"
           "  --no-isolation  load in this process instead of one child process per file\n"
           "  --png OUT       also draw the model into the PNG file OUT (one FILE at most)\n"
           "  --view K        orientation of the picture: 0 isometric (default), 1 front,\n"
           "                  2 top, 3 right, 4 back, 5 bottom, 6 left\n"
           "  --size WxH      size of the picture in pixels (default 256x256; for a drawing's\n"
           "                  PNG, its page at 4 pixels per millimetre)\n"
           "  --time MS       draw the animation MS milliseconds after its start\n"
           "  --pmi-view NAME look as the saved view NAME does, with its annotations only\n"
           "                  (without it the picture shows every annotation)\n"
           "  --drawing OUT   also write a drawing sheet to OUT (.png, .svg or .pdf; one FILE\n"
           "                  at most): a DXF file's first sheet, or the front, top, right and\n"
           "                  isometric views of a CAD model with hidden lines\n"
           "  --projection A  where the views go: first (default) or third angle\n"
           "  --hidden M      hidden-line removal: exact (default, keeps circles) or polygonal\n"
           "  --save OUT.vks  also write a snapshot of the loaded document (one FILE at most),\n"
           "                  which vekload reopens far faster than it imports the source\n"
           "  --level L       zstd level of the snapshot, 0 (none) to 19 (default 1)\n"
           "  --draft X,Y,Z[,MIN]  draft angles for the pull direction X,Y,Z; faces under\n"
           "                  MIN degrees (default 1) are insufficient\n"
           "  --thickness [MIN]  wall thickness at every mesh vertex; counts walls under MIN\n"
           "  --holes         recognise cylindrical holes\n"
           "  --compare REF   signed distances from the model to the file REF's surface\n"
           "                  (with --png the picture shows the comparison, else the holes,\n"
           "                  else the thickness, else the draft)\n"
           "Exit status: 0 all loaded (and consistent), 1 a file failed to load (or its\n"
           "picture to be written), 2 bad arguments, 3 a check found problems.\n";
}

Options parseOptions(int argc, const char* const* argv) {
    Options options;
    bool filesOnly = false;
    bool pictureOption = false;
    bool drawingOption = false;
    bool levelOption = false;
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
        } else if (std::strcmp(arg, "--png") == 0) {
            const char* path = i + 1 < argc ? argv[++i] : nullptr;
            if (!path || *path == '\0') throw std::invalid_argument("--png needs a file name");
            options.png = path;
        } else if (std::strcmp(arg, "--save") == 0) {
            const char* path = i + 1 < argc ? argv[++i] : nullptr;
            if (!path || *path == '\0') throw std::invalid_argument("--save needs a file name");
            options.save = path;
        } else if (std::strcmp(arg, "--level") == 0) {
            const char* rest = nullptr;
            if (!wholeNumber(i + 1 < argc ? argv[++i] : nullptr, 0, 19, options.saveLevel, &rest) ||
                *rest != '\0')
                throw std::invalid_argument("--level needs a number from 0 to 19");
            levelOption = true;
        } else if (std::strcmp(arg, "--view") == 0) {
            options.view = viewKey(i + 1 < argc ? argv[++i] : nullptr);
            pictureOption = true;
        } else if (std::strcmp(arg, "--time") == 0) {
            options.time = anyNumber(arg, i + 1 < argc ? argv[++i] : nullptr);
            options.timed = true;
            pictureOption = true;
        } else if (std::strcmp(arg, "--pmi-view") == 0) {
            const char* name = i + 1 < argc ? argv[++i] : nullptr;
            if (!name || *name == '\0') throw std::invalid_argument("--pmi-view needs a name");
            options.pmiView = name;
            pictureOption = true;
        } else if (std::strcmp(arg, "--size") == 0) {
            pictureSize(i + 1 < argc ? argv[++i] : nullptr, options.width, options.height);
            options.sized = true;
        } else if (std::strcmp(arg, "--drawing") == 0) {
            const char* path = i + 1 < argc ? argv[++i] : nullptr;
            if (!path || !vekhost::drawsFileType(path))
                throw std::invalid_argument("--drawing needs a file name ending in .png, .svg "
                                            "or .pdf");
            options.drawing = path;
        } else if (std::strcmp(arg, "--projection") == 0) {
            options.thirdAngle = choice(arg, i + 1 < argc ? argv[++i] : nullptr, "first", "third");
            drawingOption = true;
        } else if (std::strcmp(arg, "--hidden") == 0) {
            options.polygonalHidden =
                choice(arg, i + 1 < argc ? argv[++i] : nullptr, "exact", "polygonal");
            drawingOption = true;
        } else if (std::strcmp(arg, "--draft") == 0) {
            draftSettings(i + 1 < argc ? argv[++i] : nullptr, options.analyses);
        } else if (std::strcmp(arg, "--thickness") == 0) {
            options.analyses.thickness = true;
            if (i + 1 < argc && optionalNumber(argv[i + 1], options.analyses.thicknessMinimum)) ++i;
        } else if (std::strcmp(arg, "--holes") == 0) {
            options.analyses.holes = true;
        } else if (std::strcmp(arg, "--compare") == 0) {
            const char* path = i + 1 < argc ? argv[++i] : nullptr;
            if (!path || *path == '\0') throw std::invalid_argument("--compare needs a file name");
            options.analyses.compare = path;
        } else {
            throw std::invalid_argument(std::string("unknown option ") + arg);
        }
    }
    if (options.png.empty() && pictureOption)
        throw std::invalid_argument("--view, --time and --pmi-view only go with --png");
    if (options.png.empty() && options.drawing.empty() && options.sized)
        throw std::invalid_argument("--size only goes with --png or --drawing");
    if (options.drawing.empty() && drawingOption)
        throw std::invalid_argument("--projection and --hidden only go with --drawing");
    if (options.files.size() > 1 && !options.drawing.empty())
        throw std::invalid_argument("--drawing draws one file: give at most one FILE");
    if (!options.png.empty() && !pngSupported())
        throw std::invalid_argument("--png: this vekload was built without libpng");
    if (options.save.empty() && levelOption)
        throw std::invalid_argument("--level only goes with --save");
    if (options.files.size() > 1 && !options.save.empty())
        throw std::invalid_argument("--save writes one document: give at most one FILE");
    if (options.files.size() > 1 && !options.png.empty())
        throw std::invalid_argument("--png draws one model: give at most one FILE");
    return options;
}

} // namespace vekload
