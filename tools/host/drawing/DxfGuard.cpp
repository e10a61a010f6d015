#include "DxfGuard.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>
#include <utility>

#include "DrawingBuilder.h"
#include "LoadError.h"

namespace vekhost {

namespace {
// dxflib reads each line into a buffer of this many characters with istream::getline; a
// longer line sets the stream's failbit, after which its reading loop never reaches the end.
constexpr std::streamsize lineBuffer = 1024;
// The largest group code DXF defines.
constexpr long largestGroupCode = 1071;

// The entity kinds of the DXF reference; others must be declared in the CLASSES section.
const std::set<std::string>& definedKinds() {
    static const std::set<std::string> kinds{"3DFACE",
                                             "3DSOLID",
                                             "ACAD_PROXY_ENTITY",
                                             "ACAD_TABLE",
                                             "ARC",
                                             "ARCALIGNEDTEXT",
                                             "ARC_DIMENSION",
                                             "ATTDEF",
                                             "ATTRIB",
                                             "BODY",
                                             "CAMERA",
                                             "CIRCLE",
                                             "DGNUNDERLAY",
                                             "DIMENSION",
                                             "DWFUNDERLAY",
                                             "ELLIPSE",
                                             "EXTRUDEDSURFACE",
                                             "GEOPOSITIONMARKER",
                                             "HATCH",
                                             "HELIX",
                                             "IMAGE",
                                             "INSERT",
                                             "LARGE_RADIAL_DIMENSION",
                                             "LEADER",
                                             "LIGHT",
                                             "LINE",
                                             "LOFTEDSURFACE",
                                             "LWPOLYLINE",
                                             "MESH",
                                             "MLEADER",
                                             "MLINE",
                                             "MTEXT",
                                             "MULTILEADER",
                                             "NURBSURFACE",
                                             "OLE2FRAME",
                                             "OLEFRAME",
                                             "PDFUNDERLAY",
                                             "PLANESURFACE",
                                             "POINT",
                                             "POINTCLOUD",
                                             "POLYLINE",
                                             "RAY",
                                             "REGION",
                                             "REVOLVEDSURFACE",
                                             "SECTIONOBJECT",
                                             "SEQEND",
                                             "SHAPE",
                                             "SOLID",
                                             "SPLINE",
                                             "SUN",
                                             "SURFACE",
                                             "SWEPTSURFACE",
                                             "TABLE",
                                             "TEXT",
                                             "TOLERANCE",
                                             "TRACE",
                                             "UNDERLAY",
                                             "VERTEX",
                                             "VIEWPORT",
                                             "WIPEOUT",
                                             "XLINE"};
    return kinds;
}

// Coordinates, sizes and angles; and extrusion directions.
bool isReal(long code) {
    return (code >= 10 && code <= 59) || (code >= 210 && code <= 239);
}

// Counts that dxflib allocates arrays for, by entity kind and group code.
bool allocatesFor(const std::string& kind, long code) {
    return (kind == "LWPOLYLINE" && code == 90) ||
           (kind == "SPLINE" && (code == 72 || code == 73 || code == 74)) ||
           (kind == "LEADER" && code == 76);
}

std::string trimmed(const char* text) {
    std::string s(text);
    const auto first = s.find_first_not_of(" \t\r");
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(" \t\r") - first + 1);
}

// The value line as dxflib keeps it: without the line end, spaces included.
std::string withoutLineEnd(const char* text) {
    std::string s(text);
    while (!s.empty() && (s.back() == '\r' || s.back() == '\n'))
        s.pop_back();
    return s;
}

std::string at(long long line) {
    return "line " + std::to_string(line) + ": ";
}

class Scanner {
public:
    explicit Scanner(std::istream& stream) : in(stream) {}

    DxfCensus run(const std::function<void(long long)>& progress) {
        std::string code;
        std::string value;
        bool pending = false;
        while (readLine()) {
            if (!pending) {
                code = trimmed(buffer);
                pending = true;
                continue;
            }
            value = withoutLineEnd(buffer);
            pending = false;
            pair(code, value);
            if (progress && (census.pairs & 0x3FFF) == 0) progress(census.bytes);
        }
        if (census.pairs == 0 && !sawSection) throw LoadError("not a DXF file: no group pairs");
        if (!sawSection) throw LoadError("not a DXF file: it has no SECTION");
        if (!sawEof)
            throw LoadError(pending ? "truncated: the file ends inside a group pair"
                                    : "truncated: the file ends without its EOF marker");
        for (const auto& [kind, line] : undeclared)
            if (declared.count(kind) == 0)
                throw LoadError(at(line) + "unknown entity kind '" + kind + "'");
        if (largestCount.first > census.pairs)
            throw LoadError(at(largestCount.second) + "count " +
                            std::to_string(largestCount.first) + " is more than the file holds");
        return std::move(census);
    }

private:
    bool readLine() {
        if (!in.getline(buffer, lineBuffer)) {
            if (in.eof() && in.gcount() > 0) {
                ++lines;
                census.bytes += in.gcount();
                return true;
            }
            if (!in.eof())
                throw LoadError(at(lines + 1) + "longer than " + std::to_string(lineBuffer - 1) +
                                " characters, more than dxflib reads");
            return false;
        }
        ++lines;
        census.bytes += in.gcount();
        if (lines == 1 && std::strncmp(buffer, "AutoCAD Binary DXF", 18) == 0)
            throw LoadError("binary DXF, which dxflib does not read");
        return true;
    }

    void pair(const std::string& codeText, const std::string& value) {
        ++census.pairs;
        // Checked after the EOF marker too: dxflib reads on to the end of the file.
        const long code = groupCode(codeText);
        if (code == 0) {
            entity = value;
            if (value == "SECTION") {
                sawSection = true;
                expectSectionName = true;
            } else if (value == "ENDSEC") {
                section.clear();
            } else if (value == "EOF") {
                sawEof = true;
            } else if ((section == "ENTITIES" || section == "BLOCKS") && value != "BLOCK" &&
                       value != "ENDBLK") {
                ++census.kinds[value];
                if (definedKinds().count(value) == 0) undeclared.emplace(value, lines - 1);
            }
            return;
        }
        if (code == 2 && expectSectionName) section = trimmed(value.c_str());
        expectSectionName = false;
        if (section == "CLASSES" && entity == "CLASS" && code == 1) declared.insert(value);
        if (section == "HEADER") header(code, value);
        if (isReal(code) && (section == "ENTITIES" || section == "BLOCKS")) real(value);
        if (allocatesFor(entity, code)) {
            // As dxflib converts it: strtol, then int.
            const long long count = static_cast<int>(std::strtol(value.c_str(), nullptr, 10));
            if (count > largestCount.first) largestCount = {count, lines};
        }
    }

    long groupCode(const std::string& text) const {
        char* end = nullptr;
        errno = 0;
        const long code = std::strtol(text.c_str(), &end, 10);
        if (text.empty() || *end != '\0' || errno != 0 || code < 0 || code > largestGroupCode)
            throw LoadError(at(lines - 1) + "'" + text.substr(0, 40) + "' is not a group code");
        return code;
    }

    // dxflib takes a value it cannot read as 0, and what it can as is: NaN and infinities
    // would reach the drawing as numbers, and text as zeros.
    void real(const std::string& value) const {
        std::string text = trimmed(value.c_str());
        std::replace(text.begin(), text.end(), ',', '.');
        char* end = nullptr;
        const double number = std::strtod(text.c_str(), &end);
        if (text.empty() || *end != '\0' || !std::isfinite(number))
            throw LoadError(at(lines) + "'" + text.substr(0, 40) + "' is not a finite number");
        if (std::fabs(number) > DrawingBuilder::largestCoordinate) {
            char shown[32];
            std::snprintf(shown, sizeof shown, "%g", number);
            throw LoadError(at(lines) + shown + " is out of range");
        }
    }

    void header(long code, const std::string& value) {
        if (code == 9) {
            variable = trimmed(value.c_str());
        } else if (variable == "$ACADVER" && code == 1) {
            census.version = trimmed(value.c_str());
        } else if (variable == "$DWGCODEPAGE" && code == 3) {
            census.codepage = trimmed(value.c_str());
        }
    }

    std::istream& in;
    char buffer[lineBuffer] = {};
    long long lines = 0;
    DxfCensus census;
    std::string section;
    std::string entity;
    std::string variable;
    bool expectSectionName = false;
    bool sawSection = false;
    bool sawEof = false;
    std::set<std::string> declared;
    std::map<std::string, long long> undeclared;
    std::pair<long long, long long> largestCount{0, 0};
};
} // namespace

DxfCensus scanDxf(std::istream& in, const std::function<void(long long)>& progress) {
    return Scanner(in).run(progress);
}

} // namespace vekhost
