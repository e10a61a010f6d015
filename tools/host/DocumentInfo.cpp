#include "DocumentInfo.h"

#include <cmath>
#include <cstddef>

namespace vekhost {

namespace {
struct UnitRecord {
    int code;
    const char* name;
    double millimetres;
};

constexpr UnitRecord units[] = {
    {INCH, "in", 25.4},          {MILLIMETRE, "mm", 1.0},   {FOOT, "ft", 304.8},
    {MILE, "mi", 1609344.0},     {METRE, "m", 1000.0},      {KILOMETRE, "km", 1.0e6},
    {MIL, "mil", 0.0254},        {MICROMETRE, "um", 0.001}, {CENTIMETRE, "cm", 10.0},
    {MICROINCH, "uin", 2.54e-5},
};

const UnitRecord* find(int code) {
    for (const UnitRecord& unit : units)
        if (unit.code == code) return &unit;
    return nullptr;
}
} // namespace

const char* lengthUnitName(int unit) {
    const UnitRecord* record = find(unit);
    return record ? record->name : "";
}

double millimetresPer(int unit) {
    const UnitRecord* record = find(unit);
    return record ? record->millimetres : 0.0;
}

int unitOfSize(double millimetres) {
    for (const UnitRecord& unit : units)
        if (std::fabs(millimetres - unit.millimetres) <= 1e-6 * unit.millimetres) return unit.code;
    return NO_UNIT;
}

void writeInfo(veksg::SCInfo& info, const SourceInfo& source) {
    info.info0 = source.unit;
    info.info1 = source.fileUnit;
    info.info2 = source.entities;
    info.info3 = source.roots;
    info.info4 = source.animations;
}

} // namespace vekhost
