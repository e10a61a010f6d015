#include "veksg/SCTempGraphics.h"

#include "core/TableSteps.h"

namespace veksg {

SCTempGraphics::SCTempGraphics() : Schema(Schema::TEMP_GRAPHICS) {
}

SCTempGraphics::~SCTempGraphics() = default;

short SCTempGraphics::type() const {
    return Schema::type();
}

void SCTempGraphics::cleanup() {
    detail::releaseTables(texts3d, leaders, tempShared1, tempShared2, measures);
    tempValues.clear();
    detail::releaseTables(tempShared3);
}

} // namespace veksg
