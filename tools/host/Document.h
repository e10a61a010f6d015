#pragma once

#include <memory>
#include <vector>

#include "vek2d/SCScene2D.h"
#include "veksg/veksg.h"

namespace vekhost {

/// One loaded model: every component a host fills, made through the factory where it makes
/// them and constructed directly where it does not (features, the two analyses, drawings),
/// plus the layer records (the library stores layers as a table of `Layer` held by the host;
/// the `SCLayer` component carries a single setting).
struct Document {
    Document();

    std::shared_ptr<veksg::IFactory> factory;
    std::shared_ptr<veksg::SCScene> scene;
    std::shared_ptr<veksg::SCSceneTopo> topo;
    std::shared_ptr<veksg::SCSceneRes> resources;
    std::shared_ptr<veksg::SCSceneRT> runtime;
    std::shared_ptr<veksg::SCPmi> pmi;
    std::shared_ptr<veksg::SCView> views;
    std::shared_ptr<veksg::SCStates> states;
    std::shared_ptr<veksg::SCTempGraphics> tempGraphics;
    std::shared_ptr<veksg::SCAttributes> attributes;
    std::shared_ptr<veksg::SCInfo> info;
    std::shared_ptr<veksg::SCLayer> layerSetting;
    std::shared_ptr<veksg::SCExtFile> extFiles;
    std::shared_ptr<veksg::SCAnimation> animation;
    std::shared_ptr<veksg::SCFeatures> features;
    std::shared_ptr<veksg::SCHoleInfo> holeInfo;
    std::shared_ptr<veksg::SCComprae> comparison;
    std::shared_ptr<veksg::SCThicknessAnalysis> thickness;
    std::shared_ptr<veksg::SCDraftAngleAnalysis> draft;
    std::shared_ptr<vek2d::SCScene2D> drawing;
    veksg::Container<int, veksg::Layer> layers;

    /// Every component, in the order they are created and resized.
    std::vector<std::shared_ptr<veksg::Schema>> components() const;
    /// Resizes every component with a resizer answering from this document's tables.
    void resizeAll();
};

} // namespace vekhost
