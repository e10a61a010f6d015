#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Document.h"

namespace vekhost {

/// Length units, numbered as IGES numbers them: the set covers every unit that STEP and the
/// mesh formats name, and each has an exact code where a count of micrometres would not.
enum LengthUnit : int {
    NO_UNIT = 0,
    INCH = 1,
    MILLIMETRE = 2,
    FOOT = 4,
    MILE = 5,
    METRE = 6,
    KILOMETRE = 7,
    MIL = 8,
    MICROMETRE = 9,
    CENTIMETRE = 10,
    MICROINCH = 11,
};

/// "mm", "in", ...; empty for `NO_UNIT` and codes that name no unit.
const char* lengthUnitName(int unit);
/// Millimetres per unit; 0 for codes that name no unit.
double millimetresPer(int unit);
/// The unit whose size in millimetres is `millimetres` (to a millionth), or `NO_UNIT`.
int unitOfSize(double millimetres);

/// What a file that a document reads besides the named one is to it.
namespace roles {
constexpr const wchar_t* materialLibrary = L"material library";
constexpr const wchar_t* buffer = L"buffer";
constexpr const wchar_t* texture = L"texture";
/// Another model file that this one takes parts from.
constexpr const wchar_t* model = L"referenced model";
constexpr const wchar_t* data = L"data";
} // namespace roles

/// A file the document reads besides the one named, or one it names that is not there.
struct ExternalFile {
    std::wstring path;
    std::wstring role;
    bool found = true;
};

/// What a file tells about itself beside its geometry.
struct SourceInfo {
    /// `LengthUnit` of the document's coordinates, as the reader delivers them.
    int unit = NO_UNIT;
    /// `LengthUnit` the file states.
    int fileUnit = NO_UNIT;
    /// The model's tolerance in the document's unit; 0 when the file states none.
    double tolerance = 0;
    /// Entities in the file (STEP instances, IGES directory entries, BREP sub-shapes).
    int entities = 0;
    /// Roots the file offers for transfer; -1 for formats without them.
    int roots = -1;
    /// Animations in the file (the document keeps one).
    int animations = 0;
    /// Attributes of the document as a whole ("author", "organisation", ...), in order.
    std::vector<std::pair<std::wstring, std::wstring>> attributes;
    std::vector<ExternalFile> files;
};

/// Writes SCInfo's numbers (the path and a stated tolerance aside: see the builder).
void writeInfo(veksg::SCInfo& info, const SourceInfo& source);

} // namespace vekhost
