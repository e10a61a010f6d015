#include "veksg/Factory.h"

#include "veksg/Documents.h"
#include "veksg/Features.h"
#include "veksg/SCAttributes.h"
#include "veksg/SCPmi.h"
#include "veksg/SCScene.h"
#include "veksg/SCSceneRT.h"
#include "veksg/SCSceneRes.h"
#include "veksg/SCSceneTopo.h"
#include "veksg/SCStates.h"
#include "veksg/SCTempGraphics.h"
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
    case Schema::SCENE:
        return makeComponent<SCScene>();
    case Schema::SCENE_RT:
        return makeComponent<SCSceneRT>();
    case Schema::PMI_DATA:
        return makeComponent<SCPmi>();
    case Schema::EXT_FILE:
        return makeComponent<SCExtFile>();
    case Schema::ATTRIBUTES:
        return makeComponent<SCAttributes>();
    case Schema::LAYER:
        return makeComponent<SCLayer>();
    case Schema::TEMP_GRAPHICS:
        return makeComponent<SCTempGraphics>();
    case Schema::INFO:
        return makeComponent<SCInfo>();
    case Schema::VIEW:
        return makeComponent<SCView>();
    case Schema::ANIMATION:
        return makeComponent<SCAnimation>();
    case Schema::SCENE_TOPO:
        return makeComponent<SCSceneTopo>();
    case Schema::SCENE_RES:
        return makeComponent<SCSceneRes>();
    case Schema::HOOPS:
        return makeComponent<SCHoops>();
    case Schema::COMPRAE:
        return makeComponent<SCComprae>();
    case Schema::STATES:
        return makeComponent<SCStates>();
    case Schema::HOLE_INFO:
        return makeComponent<SCHoleInfo>();
    default:
        // Unknown codes, and the four components hosts build themselves, are not errors.
        return {};
    }
}

std::shared_ptr<IFactory> createFactory() {
    return std::make_shared<SCFactory>();
}

} // namespace veksg
