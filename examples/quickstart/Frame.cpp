#include <cstdio>

#include "Steps.h"

namespace quickstart {

void showFactory(veksg::IFactory& factory) {
    using veksg::Schema;
    std::printf("factory: which component codes does it make?\n");
    const short codes[] = {Schema::SCENE,         Schema::SCENE_RT,   Schema::PMI_DATA,
                           Schema::EXT_FILE,      Schema::ATTRIBUTES, Schema::LAYER,
                           Schema::TEMP_GRAPHICS, Schema::INFO,       Schema::VIEW,
                           Schema::ANIMATION,     Schema::SCENE_TOPO, Schema::SCENE_RES,
                           Schema::HOOPS,         Schema::COMPRAE,    Schema::STATES,
                           Schema::HOLE_INFO,     Schema::FEATURES,   Schema::SCENE_2D};
    for (short code : codes) {
        const auto component = factory.create(code);
        std::printf("  code %2d: %s\n", code, component ? "made" : "not made by the factory");
    }
}

void showTablesAndRecords(HostResizer& resizer) {
    std::printf("nodes: appending three named nodes\n");
    veksg::Container<int, veksg::Node> nodes;
    for (const wchar_t* name : {L"assembly", L"bolt", L"nut"}) {
        veksg::Node node;
        node.setName(name);
        node.id = nodes.insert(node);
        std::printf("  key %d: %ls\n", node.id, name);
    }
    resizer.lastNode = nodes.lastKey();

    std::printf("hierarchy: assembly -> bolt, nut, bolt (a repeated child)\n");
    veksg::Hierarchy children;
    children.addChild(0, {1, 2, 1});
    children.removeDuplicates();
    std::printf("  after removeDuplicates the assembly has %zu children\n",
                children.getValue(0).size());

    std::printf("per-node flags grown to the resizer's answer for key space 10\n");
    veksg::Container<int, char> flags;
    flags.resizeToFitKey(resizer.lastKeyOf(10), 1);
    std::printf("  %d flags, all set\n", flags.size());

    veksg::OBBox box;
    box.axisX = veksg::Point3(10.0f, 0.0f, 0.0f);
    box.axisY = veksg::Point3(0.0f, 5.0f, 0.0f);
    box.axisZ = veksg::Point3(0.0f, 0.0f, 2.0f);
    const auto top = box.urf();
    std::printf("oriented box: upper right front corner (%g, %g, %g)\n", top[0], top[1], top[2]);
}

} // namespace quickstart
