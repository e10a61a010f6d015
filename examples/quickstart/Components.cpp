#include <cstdio>
#include <functional>
#include <memory>
#include <string>

#include "Steps.h"
#include "vek2d/SCScene2D.h"

namespace quickstart {

namespace {

template <typename T>
T& as(veksg::Schema& component) {
    return dynamic_cast<T&>(component);
}

std::string count(int n, const char* what) {
    return std::to_string(n) + " " + what;
}

struct Kind {
    const char* name;
    short code;
    // Set for the four components the factory leaves to the host.
    std::function<std::shared_ptr<veksg::Schema>()> direct;
    std::function<std::string(veksg::Schema&)> summary;
};

} // namespace

void showEveryComponent(veksg::IFactory& factory) {
    using namespace veksg;
    const Kind kinds[] = {
        {"SCScene",
         Schema::SCENE,
         {},
         [](Schema& c) { return count(as<SCScene>(c).meshes.size(), "meshes"); }},
        {"SCSceneRT",
         Schema::SCENE_RT,
         {},
         [](Schema& c) {
             return count(static_cast<int>(as<SCSceneRT>(c).visibility.sets[0].size()),
                          "node visibility bits");
         }},
        {"SCPmi",
         Schema::PMI_DATA,
         {},
         [](Schema& c) { return count(as<SCPmi>(c).pmis.size(), "annotations"); }},
        {"SCExtFile",
         Schema::EXT_FILE,
         {},
         [](Schema& c) {
             return std::string("deletes its files on destruction: ") +
                    (as<SCExtFile>(c).deleteFilesOnDestroy ? "yes" : "no");
         }},
        {"SCAttributes",
         Schema::ATTRIBUTES,
         {},
         [](Schema& c) { return count(as<SCAttributes>(c).flags.size(), "attribute flags"); }},
        {"SCLayer",
         Schema::LAYER,
         {},
         [](Schema& c) { return "current layer " + std::to_string(as<SCLayer>(c).layer); }},
        {"SCTempGraphics",
         Schema::TEMP_GRAPHICS,
         {},
         [](Schema& c) { return count(as<SCTempGraphics>(c).measures.size(), "measures"); }},
        {"SCInfo",
         Schema::INFO,
         {},
         [](Schema& c) {
             return std::string("file path ") +
                    (as<SCInfo>(c).filePath.empty() ? "not set" : "set");
         }},
        {"SCView",
         Schema::VIEW,
         {},
         [](Schema& c) { return count(as<SCView>(c).orientations.size(), "preset orientations"); }},
        {"SCAnimation",
         Schema::ANIMATION,
         {},
         [](Schema& c) {
             return count(static_cast<int>(as<SCAnimation>(c).transforms.size()), "key transforms");
         }},
        {"SCSceneTopo",
         Schema::SCENE_TOPO,
         {},
         [](Schema& c) { return count(as<SCSceneTopo>(c).faces.size(), "faces"); }},
        {"SCSceneRes",
         Schema::SCENE_RES,
         {},
         [](Schema& c) { return count(as<SCSceneRes>(c).primitivesA.size(), "face primitives"); }},
        {"SCFeatures", Schema::FEATURES, [] { return std::make_shared<SCFeatures>(); },
         [](Schema& c) { return count(as<SCFeatures>(c).holes.size(), "holes"); }},
        {"vek2d::SCScene2D", Schema::SCENE_2D, [] { return std::make_shared<vek2d::SCScene2D>(); },
         [](Schema& c) {
             return count(static_cast<int>(as<vek2d::SCScene2D>(c).sheets.size()), "sheets");
         }},
        {"SCHoops",
         Schema::HOOPS,
         {},
         [](Schema& c) {
             return count(static_cast<int>(as<SCHoops>(c).names0.size()), "exchanged names");
         }},
        {"SCComprae",
         Schema::COMPRAE,
         {},
         [](Schema& c) {
             const bool set = *as<SCComprae>(c).refFile() != L'\0';
             return std::string("reference file ") + (set ? "set" : "not set");
         }},
        {"SCStates",
         Schema::STATES,
         {},
         [](Schema& c) {
             return count(static_cast<int>(as<SCStates>(c).executors.size()), "executors");
         }},
        {"SCThicknessAnalysis", Schema::THICKNESS_ANALYSIS,
         [] { return std::make_shared<SCThicknessAnalysis>(); },
         [](Schema& c) {
             return count(static_cast<int>(as<SCThicknessAnalysis>(c).thicknesses.size()),
                          "thickness results");
         }},
        {"SCDraftAngleAnalysis", Schema::DRAFT_ANGLE_ANALYSIS,
         [] { return std::make_shared<SCDraftAngleAnalysis>(); },
         [](Schema& c) {
             return count(static_cast<int>(as<SCDraftAngleAnalysis>(c).anglesA.size()),
                          "draft angles");
         }},
        {"SCHoleInfo",
         Schema::HOLE_INFO,
         {},
         [](Schema& c) {
             return count(static_cast<int>(as<SCHoleInfo>(c).holeRecords.size()), "hole records");
         }},
    };

    std::printf("every component kind, once:\n");
    for (const Kind& kind : kinds) {
        const auto component = kind.direct ? kind.direct() : factory.create(kind.code);
        std::printf("  %2d %-21s %-12s %s\n", component->type(), kind.name,
                    kind.direct ? "(host-made)" : "(factory)", kind.summary(*component).c_str());
    }
}

} // namespace quickstart
