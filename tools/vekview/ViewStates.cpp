#include "ViewStates.h"

#include <algorithm>
#include <deque>

namespace vekview {

namespace {
// Dragging the section makes a state per frame; the oldest go beyond this many.
constexpr std::size_t historyLength = 256;

void keepRecent(std::deque<std::shared_ptr<veksg::IState>>& states) {
    while (states.size() > historyLength)
        states.pop_front();
}

veksg::Point3 toPoint(const Vec3& v) {
    return veksg::Point3(static_cast<float>(v[0]), static_cast<float>(v[1]),
                         static_cast<float>(v[2]));
}

Vec3 toVec(const veksg::Point3& p) {
    return {p[0], p[1], p[2]};
}

class CameraExecutor : public veksg::IStateExecutor {
public:
    explicit CameraExecutor(Camera& camera) : camera(camera) {}
    void execute(const std::shared_ptr<veksg::IState>& state) override {
        const auto* placed = dynamic_cast<const veksg::CameraState*>(state.get());
        if (!placed) return;
        camera.eye = toVec(placed->position);
        camera.target = toVec(placed->target);
        camera.up = toVec(placed->up);
    }

private:
    Camera& camera;
};

class SectionExecutor : public veksg::IStateExecutor {
public:
    explicit SectionExecutor(SectionPlane& plane) : plane(plane) {}
    void execute(const std::shared_ptr<veksg::IState>& state) override {
        const auto* cut = dynamic_cast<const veksg::SectionState*>(state.get());
        if (!cut) return;
        plane.active = !cut->sections.empty() && cut->sections.front();
        if (!plane.active) return;
        const veksg::Section& section = *cut->sections.front();
        plane.normal = normalized(toVec(section.normal));
        plane.offset = dot(plane.normal, toVec(section.origin));
        plane.active = length(plane.normal) > 0;
    }

private:
    SectionPlane& plane;
};
} // namespace

ViewStates::ViewStates(vekhost::Document& document, Camera& camera, SectionPlane& section)
    : doc(document), camera(camera), plane(section) {
    veksg::SCStates& states = *doc.states;
    // A document opened by another viewer may hold executors of its own; ours replace them.
    states.removeStateExecutor(cameraCommand);
    states.removeStateExecutor(sectionCommand);
    states.addStateExecutor(cameraCommand, std::make_shared<CameraExecutor>(camera));
    states.addStateExecutor(sectionCommand, std::make_shared<SectionExecutor>(section));
}

ViewStates::~ViewStates() {
    doc.states->removeStateExecutor(cameraCommand);
    doc.states->removeStateExecutor(sectionCommand);
}

int ViewStates::saveView(const std::wstring& name) {
    veksg::SCPmi& pmi = *doc.pmi;
    int key = -1;
    for (int k = 0; k < pmi.views.size() && key < 0; ++k)
        if (pmi.views.getValue(k) && name == pmi.views.getValue(k)->name()) key = k;
    auto view = std::make_shared<veksg::View>();
    if (key < 0) key = pmi.views.insert(view);
    pmi.views.setValue(key, view);
    view->setName(name.c_str());
    view->id = key;
    view->position = toPoint(camera.eye);
    view->target = toPoint(camera.target);
    view->up = toPoint(camera.up);
    view->viewValue = camera.orthographic ? 1 : 0;

    std::shared_ptr<veksg::IState> state =
        factory.createCameraState(view->position, view->target, view->up);
    state->setCmdId(cameraCommand);
    auto& sequence = doc.states->typeStates->containers[key].states;
    sequence.clear();
    sequence.push_back(state);
    if (plane.active) sequence.push_back(sectionState(plane));
    // What is saved is what the floats hold; showing exactly that now makes a restored view
    // look the same as the one saved.
    apply(state);
    return key;
}

bool ViewStates::restoreView(const std::wstring& name) {
    const veksg::SCPmi& pmi = *doc.pmi;
    for (int key = 0; key < pmi.views.size(); ++key)
        if (pmi.views.getValue(key) && name == pmi.views.getValue(key)->name())
            return restoreView(key);
    return false;
}

bool ViewStates::restoreView(int key) {
    if (!cameraStateOf(key)) return false;
    bool cut = false;
    for (const auto& state : *statesOf(key)) {
        if (!state) continue;
        cut = cut || state->getCmdId() == sectionCommand;
        apply(state);
    }
    if (!cut) apply(sectionState(SectionPlane()));
    camera.orthographic = doc.pmi->views.getValue(key)->viewValue != 0;
    return true;
}

std::vector<int> ViewStates::savedViews() const {
    std::vector<int> keys;
    for (int key = 0; key < doc.pmi->views.size(); ++key)
        if (cameraStateOf(key)) keys.push_back(key);
    return keys;
}

const std::deque<std::shared_ptr<veksg::IState>>* ViewStates::statesOf(int viewKey) const {
    if (viewKey < 0 || viewKey >= doc.pmi->views.size() || !doc.pmi->views.getValue(viewKey))
        return nullptr;
    const auto& containers = doc.states->typeStates->containers;
    const auto found = containers.find(viewKey);
    return found == containers.end() ? nullptr : &found->second.states;
}

std::shared_ptr<veksg::IState> ViewStates::cameraStateOf(int viewKey) const {
    const auto* states = statesOf(viewKey);
    if (!states) return nullptr;
    for (const auto& state : *states)
        if (state && state->getCmdId() == cameraCommand) return state;
    return nullptr;
}

void ViewStates::setSection(const SectionPlane& cut) {
    apply(sectionState(cut));
}

std::shared_ptr<veksg::IState> ViewStates::sectionState(const SectionPlane& cut) {
    std::vector<std::shared_ptr<veksg::Section>> sections;
    if (cut.active) {
        auto section = std::make_shared<veksg::Section>();
        const Vec3 n = normalized(cut.normal);
        section->normal = toPoint(n);
        section->origin = toPoint(n * cut.offset);
        section->setName(L"Section");
        sections.push_back(section);
    }
    std::vector<int> ids;
    std::shared_ptr<veksg::IState> state = factory.createSectionState(
        sections, ids, 0, std::vector<bool>(sections.size(), true), nullptr);
    state->setCmdId(sectionCommand);
    return state;
}

void ViewStates::apply(const std::shared_ptr<veksg::IState>& state) {
    const std::shared_ptr<veksg::IStateExecutor> executor =
        doc.states->getExecutor(state->getCmdId());
    if (!executor) return;
    executor->execute(state);
    doc.states->firstStates->states.push_back(state);
    keepRecent(doc.states->firstStates->states);
}

} // namespace vekview
