#include "Document.h"

#include <stdexcept>
#include <string>

#include "KeySpaces.h"

namespace vekhost {

namespace {
template <typename Component>
std::shared_ptr<Component> make(veksg::IFactory& factory, veksg::Schema::TYPE code) {
    auto component = std::dynamic_pointer_cast<Component>(factory.create(code));
    if (!component)
        throw std::logic_error("the factory made no component for code " + std::to_string(code));
    return component;
}
} // namespace

Document::Document()
    : factory(veksg::createFactory()), scene(make<veksg::SCScene>(*factory, veksg::Schema::SCENE)),
      topo(make<veksg::SCSceneTopo>(*factory, veksg::Schema::SCENE_TOPO)),
      resources(make<veksg::SCSceneRes>(*factory, veksg::Schema::SCENE_RES)),
      runtime(make<veksg::SCSceneRT>(*factory, veksg::Schema::SCENE_RT)),
      pmi(make<veksg::SCPmi>(*factory, veksg::Schema::PMI_DATA)),
      views(make<veksg::SCView>(*factory, veksg::Schema::VIEW)),
      states(make<veksg::SCStates>(*factory, veksg::Schema::STATES)),
      tempGraphics(make<veksg::SCTempGraphics>(*factory, veksg::Schema::TEMP_GRAPHICS)),
      attributes(make<veksg::SCAttributes>(*factory, veksg::Schema::ATTRIBUTES)),
      info(make<veksg::SCInfo>(*factory, veksg::Schema::INFO)),
      layerSetting(make<veksg::SCLayer>(*factory, veksg::Schema::LAYER)),
      extFiles(make<veksg::SCExtFile>(*factory, veksg::Schema::EXT_FILE)),
      animation(make<veksg::SCAnimation>(*factory, veksg::Schema::ANIMATION)),
      features(std::make_shared<veksg::SCFeatures>()),
      holeInfo(make<veksg::SCHoleInfo>(*factory, veksg::Schema::HOLE_INFO)),
      comparison(make<veksg::SCComprae>(*factory, veksg::Schema::COMPRAE)),
      thickness(std::make_shared<veksg::SCThicknessAnalysis>()),
      draft(std::make_shared<veksg::SCDraftAngleAnalysis>()),
      drawing(std::make_shared<vek2d::SCScene2D>()) {
}

std::vector<std::shared_ptr<veksg::Schema>> Document::components() const {
    return {scene,        topo,       resources, runtime,      pmi,      views,     states,
            tempGraphics, attributes, info,      layerSetting, extFiles, animation, features,
            holeInfo,     comparison, thickness, draft,        drawing};
}

void Document::resizeAll() {
    const auto resizer = std::make_shared<DocumentResizer>(*this);
    for (const auto& component : components())
        component->resize(resizer);
}

} // namespace vekhost
