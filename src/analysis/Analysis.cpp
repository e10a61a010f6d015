#include "veksg/Analysis.h"

#include "core/TableSteps.h"

namespace veksg {

static_assert(sizeof(DraftRange) == 16, "a draft range is a 16-byte record");

SCThicknessAnalysis::~SCThicknessAnalysis() = default;

short SCThicknessAnalysis::type() const {
    return Schema::type();
}

void SCThicknessAnalysis::cleanup() {
    computed = false;
    index0 = index1 = index2 = -1;
    value0 = value1 = value2 = value3 = value4 = 0;
    result0.reset();
    result1.reset();
    result2.reset();
    detail::clearTables(thicknesses, ids);
}

SCDraftAngleAnalysis::~SCDraftAngleAnalysis() = default;

short SCDraftAngleAnalysis::type() const {
    return Schema::type();
}

void SCDraftAngleAnalysis::clearAll() {
    anglesA.clear();
    computed = false;
    detail::clearTables(objects, rangesB, matrices, pointsB, codes, pointsA);
    currentIndex = -1;
    groups.clear();
}

} // namespace veksg
