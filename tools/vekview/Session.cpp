#include "Session.h"

#include <algorithm>

#include "Batches.h"

namespace vekview {

namespace {
// The margin the software pictures keep, so that both fit a model alike.
int fitMargin(int width, int height) {
    return std::max(1, std::min(width, height) / 32);
}
} // namespace

Session::Session() = default;

// The executors leave the document's registry before the document goes.
Session::~Session() {
    states.reset();
}

void Session::show(vekhost::LoadResult model, const std::string& label) {
    states.reset();
    measuring.reset();
    selected.reset();
    visible.reset();
    gpuScene.reset();
    loaded = std::make_unique<vekhost::LoadResult>(std::move(model));
    name = label;
    if (!renderer) renderer = std::make_unique<Renderer>();
    const double start = vekhost::seconds();
    gpuScene = std::make_unique<GpuScene>(*loaded->document);
    glFinish();
    upload = vekhost::seconds() - start;

    vekhost::Document& doc = *loaded->document;
    visible = std::make_unique<vekhost::Visibility>(doc);
    selected = std::make_unique<Selection>(doc);
    plane = SectionPlane();
    states = std::make_unique<ViewStates>(doc, view, plane);
    measuring = std::make_unique<Measurement>(doc, loaded->shapes);

    // The corners of the roots' boxes frame the model, as in the software pictures.
    corners.clear();
    vekhost::Box3 all;
    for (const int root : visible->roots()) {
        if (root >= doc.scene->boxes.size() || !doc.scene->boxes.getValue(root).valid) continue;
        const veksg::BBox& box = doc.scene->boxes.getValue(root);
        for (int corner = 0; corner < 8; ++corner) {
            const Vec3 p{corner & 1 ? box.max[0] : box.min[0], corner & 2 ? box.max[1] : box.min[1],
                         corner & 4 ? box.max[2] : box.min[2]};
            corners.push_back(p);
            all.add(p);
        }
    }
    sphereCentre = all.valid ? (all.min + all.max) * 0.5 : Vec3{0, 0, 0};
    sphereRadius = all.valid ? std::max(length(all.max - all.min) / 2, 1e-9) : 1.0;
    view.setScene(sphereCentre, sphereRadius);
    doc.runtime->meshes.dirty = true;
    preset(0);
}

void Session::resize(int width, int height) {
    size[0] = std::max(width, 1);
    size[1] = std::max(height, 1);
}

bool Session::preset(int key) {
    const auto& orientations = document().views->orientations;
    if (key < 0 || key >= orientations.size()) return false;
    view.orient(axesOfPreset(matrixOf(orientations.getValue(key))));
    document().views->previousView = document().views->currentView;
    document().views->currentView = key;
    fit();
    return true;
}

void Session::fit() {
    view.fit(corners, size[0], size[1], fitMargin(size[0], size[1]));
}

void Session::setNodeShown(int node, bool shown) {
    auto& bits = document().runtime->visibility.sets[0];
    if (node < 0 || static_cast<std::size_t>(node) >= bits.size()) return;
    bits[static_cast<std::size_t>(node)] = shown;
    visible = std::make_unique<vekhost::Visibility>(document());
    document().runtime->meshes.dirty = true;
}

bool Session::nodeBit(int node) const {
    const auto& bits = loaded->document->runtime->visibility.sets[0];
    return node >= 0 && static_cast<std::size_t>(node) < bits.size() &&
           bits[static_cast<std::size_t>(node)];
}

void Session::selectionChanged() {
    document().runtime->meshes.dirty = true;
}

void Session::setSection(const SectionPlane& section) {
    states->setSection(section);
}

FrameSetup Session::setup() const {
    FrameSetup out;
    out.camera = &view;
    out.width = size[0];
    out.height = size[1];
    out.section = plane;
    out.centre = sphereCentre;
    out.radius = sphereRadius;
    return out;
}

void Session::refreshBatches() {
    vekhost::Document& doc = document();
    if (!doc.runtime->meshes.dirty && !doc.runtime->polylines.dirty) return;
    fillBatches(doc, *visible, selected->highlight());
}

Pick Session::pick(int x, int y) {
    refreshBatches();
    return picker.pick(document(), *gpuScene, *renderer, setup(), x, y);
}

Pick Session::select(int x, int y, bool add) {
    const Pick hit = pick(x, y);
    if (hit.face >= 0)
        selected->select(faceKeys, hit.face, add);
    else if (hit.mesh >= 0)
        selected->select(meshKeys, hit.mesh, add);
    else if (!add)
        selected->clear();
    selectionChanged();
    return hit;
}

FrameStats Session::draw() {
    refreshBatches();
    glViewport(0, 0, size[0], size[1]);
    return renderer->draw(document(), *gpuScene, setup());
}

Image Session::screenshot() {
    offscreen.resize(size[0], size[1]);
    offscreen.bind();
    draw();
    Image image = offscreen.read();
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    return image;
}

bool Session::project(const Vec3& point, double& x, double& y) const {
    const double aspect = static_cast<double>(size[0]) / size[1];
    const Vec4 clip =
        transform(view.projection(aspect) * view.view(), {point[0], point[1], point[2], 1});
    if (!(clip[3] > 0)) return false;
    x = (clip[0] / clip[3] + 1) / 2 * size[0];
    y = (1 - clip[1] / clip[3]) / 2 * size[1];
    return true;
}

} // namespace vekview
