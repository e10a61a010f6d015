#include "veksg/Features.h"

#include "core/TableSteps.h"

namespace veksg {

static_assert(sizeof(HoleGroupEntry) == 16, "a hole group entry is a 16-byte record");

// Assigned rather than initialised: the tuples start from their default, then take the values.
Hole::Hole(const Point3& origin, const Point3& axis, const float& size) {
    this->origin = origin;
    this->axis = axis;
    this->size = size;
}

SCFeatures::~SCFeatures() = default;

short SCFeatures::type() const {
    return Schema::type();
}

void SCFeatures::resize(std::shared_ptr<SchemaResizer> resizer) {
    detail::growTables(resizer->lastKeyOf(10), std::vector<int>(), nodeFeatures);
}

SCHoleInfo::~SCHoleInfo() = default;

short SCHoleInfo::type() const {
    return Schema::type();
}

SCComprae::~SCComprae() = default;

short SCComprae::type() const {
    return Schema::type();
}

void SCComprae::setFiles(const wchar_t* ref, const wchar_t* cmp) {
    // Only `ref` decides whether there is a comparison at all; `cmp` is trusted with it.
    if (ref == nullptr) {
        refFile_.clear();
        cmpFile_.clear();
        return;
    }
    refFile_ = ref;
    cmpFile_ = cmp;
}

SCHoops::~SCHoops() = default;

short SCHoops::type() const {
    return Schema::type();
}

} // namespace veksg
