#include "veksg/Factory.h"
#include "veksg/SCAttributes.h"
#include "veksg/SCView.h"

namespace veksg {

namespace {
// A separate ownership record rather than a combined allocation, so that destruction
// always goes through the component's virtual destructor.
template <typename Component>
std::shared_ptr<Schema> makeComponent() {
    return std::shared_ptr<Schema>(new Component());
}
} // namespace

IFactory::~IFactory() = default;

SCFactory::~SCFactory() = default;

std::shared_ptr<Schema> SCFactory::create(const short& type) {
    switch (type) {
    case Schema::ATTRIBUTES:
        return makeComponent<SCAttributes>();
    case Schema::VIEW:
        return makeComponent<SCView>();
    default:
        // Unknown codes, and the four components hosts build themselves, are not errors.
        return {};
    }
}

std::shared_ptr<IFactory> createFactory() {
    return std::make_shared<SCFactory>();
}

} // namespace veksg
