#pragma once

// Components with every table filled: every record type, objects shared between tables and
// between components, and host objects that a snapshot leaves out.
#include <memory>
#include <vector>

#include "vek2d/SCScene2D.h"
#include "veksg/veksg.h"

namespace veksg::test {

struct HostThing {};
class HostPmi : public Text3D {
public:
    HostPmi() : Text3D(L"host's own") {}
};
class HostFunctor : public IPairFunctor {
public:
    bool apply(const int&) const override { return true; }
};
class HostExecutor : public IStateExecutor {
public:
    void execute(const std::shared_ptr<IState>&) override {}
};
class HostActivator : public IStateActivator {
public:
    void activate(const std::shared_ptr<IState>&) override {}
};

/// The number of host objects `everything()` holds.
constexpr int hostObjectsInEverything = 11;

inline std::shared_ptr<wchar_t> wideText(const wchar_t* text) {
    const std::size_t n = std::wcslen(text) + 1;
    std::shared_ptr<wchar_t> chars(new wchar_t[n], std::default_delete<wchar_t[]>());
    std::wmemcpy(chars.get(), text, n);
    return chars;
}

template <typename C>
std::shared_ptr<C> made(IFactory& factory, Schema::TYPE code) {
    return std::dynamic_pointer_cast<C>(factory.create(code));
}

inline std::vector<std::shared_ptr<Schema>> everything() {
    const auto factory = createFactory();
    const Point3 p(1.5f, -2.0f, 3.25f);
    const Point3 q(-0.5f, 8.0f, 1e-7f);
    Transform moved;
    moved.matrix[12] = 4.0f;
    moved.valid = true;
    auto host = std::make_shared<HostThing>();

    auto mesh = std::make_shared<Mesh>();
    mesh->vn = {{{1, 2, 3}, {0, 0, 1}}, {{4, 5, 6}, {0, 1, 0}}};
    mesh->vnc = {{{1, 2, 3}, {1, 0, 0}, {0.1f, 0.2f, 0.3f, 0.4f}}};
    mesh->vnt = {{{7, 8, 9}, {0, 0, -1}, {0.5f, 0.25f}}};
    auto line = std::make_shared<Polyline>();
    line->points = {p, q};
    line->values = {3, -1};
    auto texture = std::make_shared<Texture>();
    texture->path = L"wood\U0001F332.png";

    auto scene = made<SCScene>(*factory, Schema::SCENE);
    scene->meshes.insert(mesh), scene->meshes.insert(mesh), scene->meshes.insert(nullptr);
    scene->polylines.insert(line);
    scene->meshMaterials.insert({{0.1f, 0.2f, 0.3f, 1}, {1, 1, 1, 1}, {}, {}, 12.0f, true});
    scene->polylineMaterials.insert({{0, 0, 0, 1}, 2.0f, true});
    scene->boxes.insert({p, q, true});
    scene->transforms.insert(moved);
    scene->points.insert(q);
    scene->textures.insert(texture), scene->textures.insert(texture);
    scene->links6a.insert(0), scene->links7.insert(-1), scene->links6b.insert(5);
    Font font;
    font.size = 12, font.style = 1, font.attributes = 3;
    font.setName(L"Sans"), font.setPath(L"/fonts/sans.ttf");
    scene->fonts.insert(font);
    scene->hierarchy.addChild(1, {4, 2, 4});
    Text text;
    text.position = p, text.font = 0, text.color = 7, text.attributes = 9;
    text.set(L"\u00e9t\u00e9 \U0001F600");
    scene->texts.insert(text);
    scene->textLinksA.insert(0), scene->textLinksB.insert(-1);

    auto topo = made<SCSceneTopo>(*factory, Schema::SCENE_TOPO);
    Node node;
    node.id = 0, node.flag = true, node.ref = 0;
    node.setName(L"bolt");
    topo->nodes.insert(node), topo->nodes.insert(Node());
    topo->faces.insert({0, true, p, q});
    topo->surfaces.insert({0});
    topo->edges.insert({0, 1, p, q, 7});
    topo->curves.insert({0});
    topo->vertices.insert({0, q});
    topo->nodeLists3.addChild(0, 1), topo->nodeLists1.addChild(1, {5, 5});
    topo->faceLists2.addChild(0, 0), topo->lists15b.addChild(0, 3);
    topo->nodeRefs1.insert(-1), topo->nodeRefs1.insert(0);
    topo->namesByKey[3] = L"three";
    topo->nodeFlags.insert(1), topo->nodeFlags.insert(0);
    topo->topoKey = 0, topo->topoCount = 1;

    auto floats = std::shared_ptr<float[]>(new float[6]{1, 2, 3, 4, 5, 6});
    auto indices = std::shared_ptr<std::uint32_t[]>(new std::uint32_t[3]{0, 1, 2});
    auto resources = made<SCSceneRes>(*factory, Schema::SCENE_RES);
    auto vertexInfo = std::make_shared<VertexInfo>();
    vertexInfo->stride = 3, vertexInfo->count = 2, vertexInfo->data = floats;
    auto half = std::make_shared<VertexInfo>();
    half->stride = 3, half->count = 1, half->data = floats;
    resources->vertexInfos.insert(vertexInfo), resources->vertexInfos.insert(half);
    resources->vertexInfos.insert(vertexInfo);
    auto indexInfo = std::make_shared<IndexInfo>();
    indexInfo->count = 3, indexInfo->data = indices;
    resources->indexInfos.insert(indexInfo);
    resources->orientedBoxes.insert({p, q, p, q, true}), resources->textures.insert(texture);
    resources->primitivesA.insert({0, 0, 3, 4, p});
    resources->primALinks1.insert(0), resources->indexLists1.insert({0, 1, 2});
    resources->fontLists.insert({0}), resources->texts.insert(text);

    auto runtime = made<SCSceneRT>(*factory, Schema::SCENE_RT);
    runtime->meshes.instances.insert({moved.matrix, 3});
    runtime->meshes.lists.insert({1, 2}), runtime->meshes.flags.insert(1);
    runtime->meshes.dirty = true;
    runtime->visibility.sets[0] = {true, false, true, true, false, false, true, true, false};
    runtime->visibility.functors[2].push_front(std::make_shared<HostFunctor>());
    runtime->selection.selection[3] = {4, 1};
    runtime->nodeValues.insert(0.5f);
    runtime->setA.insert(9), runtime->setA.insert(2);
    runtime->appearance.appearance[1] = {0xFF00FF00u};
    runtime->transientMaterials.refs2.insert(1), runtime->transientMaterials.count = 3;

    auto text3d = std::make_shared<Text3D>(L"note");
    text3d->text = L"M8", text3d->position = p, text3d->id = 4;
    auto leader = std::make_shared<Text3DLeader>(L"lead");
    leader->text3d = text3d, leader->leader = line;
    auto measure = std::make_shared<Measure>();
    measure->value = 8.0f, measure->leader = line, measure->measureText = L"8 mm";
    auto section = std::make_shared<Section>();
    section->origin = p, section->sectionSetting = 2;
    auto view = std::make_shared<View>();
    view->text2 = L"front", view->list3 = {1, 2}, view->floatList = {0.5f};
    view->transforms = {moved}, view->points = {q}, view->colorList = {0xFFFFFFFFul};
    auto tess = std::make_shared<TessPMI>(static_cast<PMI::PMIType>(40));
    auto attribute = std::make_shared<StringValue>(L"material", wideText(L"steel"));
    auto pmi = made<SCPmi>(*factory, Schema::PMI_DATA);
    for (const std::shared_ptr<PMI>& item : std::vector<std::shared_ptr<PMI>>{
             text3d, leader, measure, section, view, std::make_shared<ViewSet>(), tess})
        pmi->pmis.insert(item);
    pmi->pmis.insert(std::make_shared<HostPmi>());
    pmi->pmiList1 = {0, 2}, pmi->views.insert(view), pmi->sections.insert(section);
    pmi->pmiBoxes.insert({p, q, true});
    pmi->relation4.addChild(0, 1), pmi->map2.insert(-1);
    pmi->pmiAttributes.insert(attribute);
    pmi->pmiObject = host;
    pmi->idSet1 = {3, 1};

    auto views = made<SCView>(*factory, Schema::VIEW);
    views->currentView = 3, views->viewObject = host;

    auto triad = std::make_shared<TriadInfo>(
        p, 'x', 2, std::vector<std::vector<Point3>>{{p, q}},
        std::vector<std::vector<vekmath::Tuple<float, 16>>>{{moved.matrix}},
        std::vector<Point3>{q});
    StateFactory maker;
    auto camera = maker.createCameraState(p, q, p);
    camera->setCmdId(5);
    auto states = made<SCStates>(*factory, Schema::STATES);
    for (const auto& state : {camera, maker.createColorState({1}, {0xFF0000FFul}, {0.5f}),
                              maker.createTransformState({2}, {moved}, 1, triad),
                              maker.createVisibilityState({1, 2}, {3}),
                              maker.createClipNodeState({true, false, true})}) {
        states->firstStates->states.push_back(state);
    }
    std::vector<int> ids{7};
    states->secondStates->states.push_back(
        maker.createSectionState({section}, ids, 2, {true}, triad));
    states->typeStates->containers[4].states.push_back(camera);
    states->firstHook = std::make_shared<HostActivator>();
    states->secondSetting = 5;
    states->addStateExecutor(1, std::make_shared<HostExecutor>());

    auto temp = made<SCTempGraphics>(*factory, Schema::TEMP_GRAPHICS);
    temp->texts3d.insert(text3d), temp->leaders.insert(leader), temp->measures.insert(measure);
    temp->tempShared1.insert(host), temp->tempShared2.insert(nullptr), temp->tempValues.insert(p);

    auto attributes = made<SCAttributes>(*factory, Schema::ATTRIBUTES);
    attributes->attributes.insert(attribute);
    attributes->attributes.insert(std::make_shared<StringValue>(L"empty", nullptr));
    attributes->attributeIndices.insert({0}), attributes->flags.insert(1);
    attributes->userValue = 42;

    auto info = made<SCInfo>(*factory, Schema::INFO);
    info->setFile(L"/models/bolt.step"), info->tolerance = 0.05f, info->info3 = 8;
    auto layer = made<SCLayer>(*factory, Schema::LAYER);
    layer->layer = 2;
    auto extFiles = made<SCExtFile>(*factory, Schema::EXT_FILE);
    extFiles->files.insert({L"part.step", 3}), extFiles->fileIndices.insert({0});
    extFiles->names = {L"a", L""}, extFiles->sharedObject = host, extFiles->flagB = true;
    auto animation = made<SCAnimation>(*factory, Schema::ANIMATION);
    animation->transforms = {moved}, animation->keys = {2, 8};
    auto features = std::make_shared<SCFeatures>();
    features->holes.insert(Hole(p, q, 8.0f)), features->nodeFeatures.insert({0});
    auto holes = made<SCHoleInfo>(*factory, Schema::HOLE_INFO);
    holes->holeGroups1[2] = {{0, 1, 8.0f, 20.0f}};
    holes->holeRecords = {{p, q, 1, 0, 8.0f, 20.0f, L"M8"}};
    auto comparison = made<SCComprae>(*factory, Schema::COMPRAE);
    comparison->setFiles(L"old.step", L"new.step");
    auto thickness = std::make_shared<SCThicknessAnalysis>();
    thickness->computed = true, thickness->point1 = q, thickness->options = 7;
    thickness->thicknesses = {1.5f}, thickness->ids = {9ul}, thickness->result0 = host;
    auto draft = std::make_shared<SCDraftAngleAnalysis>();
    draft->rangesA = {{-1.0f, 1.0f, 0, 3}}, draft->groups = {{1}, {}};
    draft->pointGroups = {{p}}, draft->objects = {host, host}, draft->minAngle = -45.0f;
    draft->matrices = {moved.matrix};

    auto drawing = std::make_shared<vek2d::SCScene2D>(static_cast<Schema::TYPE>(40));
    drawing->sheets.resize(1), drawing->sheets[0].name = L"A3";
    drawing->views.resize(2);
    vek2d::Entity entity;
    entity.points = {p}, entity.scale = 0.5, entity.style = 2, entity.matrix = moved.matrix;
    drawing->entities = {entity}, drawing->entities2 = {entity, entity};
    vek2d::EntityColor red;
    red.color = Color4(1, 0, 0, 1);
    vek2d::HatchPattern hatch;
    hatch.loops = {{p, q}, {}};
    drawing->colors = {red}, drawing->hatches = {hatch};
    drawing->indices = {{indices, 3}, {indices, 2}};
    drawing->texts.insert(text), drawing->fonts.insert(font);
    drawing->ellipses = {{p, q, p, 1, 2}}, drawing->lists5.insert({6});
    drawing->map10.insert(3), drawing->scale = 2.0f;

    return {scene, topo,       resources, runtime, pmi,      views,     states,
            temp,  attributes, info,      layer,   extFiles, animation, features,
            holes, comparison, thickness, draft,   drawing};
}

} // namespace veksg::test
