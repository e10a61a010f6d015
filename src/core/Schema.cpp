#include "veksg/Schema.h"

namespace veksg {

SchemaResizer::~SchemaResizer() = default;

Schema::Schema(const short& type) : typeCode(type) {
}

Schema::~Schema() = default;

short Schema::type() const {
    return typeCode;
}

void Schema::resize(std::shared_ptr<SchemaResizer> /*resizer*/) {
}

void Schema::cleanup() {
}

} // namespace veksg
