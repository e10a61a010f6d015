#include "veksg/SCAttributes.h"

#include "core/TableSteps.h"

namespace veksg {

SCAttributes::SCAttributes() : Schema(Schema::ATTRIBUTES) {
}

SCAttributes::~SCAttributes() {
    detail::clearTables(attributes, flags);
    userValue = 0;
}

short SCAttributes::type() const {
    return Schema::type();
}

void SCAttributes::resize(std::shared_ptr<SchemaResizer> /*resizer*/) {
    detail::growTables(attributes.lastKey(), static_cast<unsigned char>(1), flags);
}

} // namespace veksg
