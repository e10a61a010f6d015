#include <cstdio>
#include <memory>

#include "Steps.h"

namespace quickstart {

namespace {
template <typename Component>
std::shared_ptr<Component> make(veksg::IFactory& factory, veksg::Schema::TYPE code) {
    return std::dynamic_pointer_cast<Component>(factory.create(code));
}
} // namespace

void showSceneTopologyAndResources(veksg::IFactory& factory,
                                   const std::shared_ptr<HostResizer>& resizer) {
    std::printf("scene, topology and resources: the typical path of a model load\n");
    const auto scene = make<veksg::SCScene>(factory, veksg::Schema::SCENE);
    const auto topo = make<veksg::SCSceneTopo>(factory, veksg::Schema::SCENE_TOPO);
    const auto res = make<veksg::SCSceneRes>(factory, veksg::Schema::SCENE_RES);

    // A plate holding two bolts, each part with one mesh and two faces of one edge each.
    int root = -1;
    for (const wchar_t* name : {L"plate", L"bolt-1", L"bolt-2"}) {
        veksg::Node node;
        node.setName(name);
        const int key = topo->nodes.insert(node);
        if (root < 0)
            root = key;
        else
            topo->nodeLists3.addChild(root, key);

        auto mesh = std::make_shared<veksg::Mesh>();
        mesh->vn.resize(3);
        scene->meshes.insert(mesh);
        scene->meshMaterials.insert(veksg::MMaterial());
    }
    for (int nodeKey = 0; nodeKey < topo->nodes.size(); ++nodeKey) {
        for (int side = 0; side < 2; ++side) {
            const int face = topo->faces.insert(veksg::Face());
            topo->nodeLists4.addChild(nodeKey, face);
            const int edge = topo->edges.insert(veksg::Edge());
            // Loaders often add the same edge twice; resize leaves it listed once.
            topo->faceLists2.addChild(face, {edge, edge});
        }
    }
    res->fonts.insert(veksg::Font());
    scene->fonts.insert(veksg::Font());
    scene->texts.insert(veksg::Text());
    res->vertexInfos.insert(std::make_shared<veksg::VertexInfo>());
    res->primitivesA.insert(veksg::PrimitiveInfo());

    resizer->lastNode = topo->nodes.lastKey();
    resizer->lastFace = topo->faces.lastKey();
    resizer->lastEdge = topo->edges.lastKey();
    std::printf("  %d nodes, %d faces, %d edges; resizing every component\n", topo->nodes.size(),
                topo->faces.size(), topo->edges.size());
    const std::shared_ptr<veksg::Schema> components[] = {scene, topo, res};
    for (const auto& component : components)
        component->resize(resizer);

    std::printf("  topology: %d node flags, %d node links, %d face links, %d edge links\n",
                topo->nodeFlags.size(), topo->nodeRefs1.size(), topo->faceRefs1.size(),
                topo->edgeRefs1.size());
    std::printf("  topology: face 0 lists its edge %zu time(s) after the repeated add\n",
                topo->faceLists2.getValue(0).size());
    std::printf("  scene: %d hierarchy slots (one per font), %d text links\n",
                scene->hierarchy.size(), scene->textLinksA.size());
    std::printf("  resources: %d vertex lists, %d primitive links, %d font lists\n",
                res->vertexLists.size(), res->primALinks1.size(), res->fontLists.size());
}

} // namespace quickstart
