#pragma once

#include <memory>
#include <string>

#include "Camera.h"
#include "Framebuffers.h"
#include "GpuScene.h"
#include "Loader.h"
#include "Measurement.h"
#include "Picker.h"
#include "Renderer.h"
#include "Selection.h"
#include "ViewStates.h"
#include "Visibility.h"

namespace vekview {

/// One model in the viewer and everything shown of it: the loaded document, its GPU copy,
/// the camera, the section, the selection, saved views and measurements. The window and the
/// script drive it alike. Needs a current OpenGL context while it holds a model.
class Session {
public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Shows a loaded model in place of the last one: uploads it and fits preset 0.
    void show(vekhost::LoadResult model, const std::string& label);
    bool hasModel() const { return loaded != nullptr; }
    vekhost::Document& document() { return *loaded->document; }
    const vekhost::LoadResult& model() const { return *loaded; }
    const std::string& label() const { return name; }
    /// Seconds the last `show` spent putting the model on the GPU.
    double uploadSeconds() const { return upload; }
    const GpuScene& gpu() const { return *gpuScene; }

    /// The size of the view in pixels.
    void resize(int width, int height);
    int width() const { return size[0]; }
    int height() const { return size[1]; }
    Camera& camera() { return view; }

    /// Turns to preset `key` of `SCView::orientations` and fits; false without that key.
    bool preset(int key);
    /// Fits the whole model, whatever is hidden, into the view.
    void fit();

    /// Sets a node's bit in `SCSceneRT::visibility` set 0.
    void setNodeShown(int node, bool shown);
    /// The node's own bit; a node also needs those of the nodes above it to show.
    bool nodeBit(int node) const;
    /// The rule applied to the current bits.
    const vekhost::Visibility& visibility() const { return *visible; }

    Selection& selection() { return *selected; }
    /// Call after changing the selection, so that the next frame shows it.
    void selectionChanged();
    ViewStates& views() { return *states; }
    Measurement& measurement() { return *measuring; }
    const SectionPlane& section() const { return plane; }
    /// Sets the section through a section state (ViewStates::setSection).
    void setSection(const SectionPlane& section);
    /// The sphere around the model.
    const Vec3& centre() const { return sphereCentre; }
    double radius() const { return sphereRadius; }

    /// What lies under pixel (x, y) from the top left of the view.
    Pick pick(int x, int y);
    /// Picks as a click does: the face under the pixel (the mesh for mesh files) becomes the
    /// selection, or with `add` joins it; nothing under it clears the selection unless `add`.
    Pick select(int x, int y, bool add = false);
    /// Draws a frame of the view's size into the bound framebuffer.
    FrameStats draw();
    /// Draws the view offscreen and reads it back; the background has alpha 0.
    Image screenshot();
    /// Where a world point appears, in pixels from the top left; false behind the eye.
    bool project(const Vec3& point, double& x, double& y) const;

private:
    FrameSetup setup() const;
    void refreshBatches();

    std::unique_ptr<vekhost::LoadResult> loaded;
    std::string name;
    double upload = 0;
    std::unique_ptr<GpuScene> gpuScene;
    std::unique_ptr<Renderer> renderer;
    Picker picker;
    ColorTarget offscreen;
    std::unique_ptr<vekhost::Visibility> visible;
    std::unique_ptr<Selection> selected;
    std::unique_ptr<ViewStates> states;
    std::unique_ptr<Measurement> measuring;
    Camera view;
    SectionPlane plane;
    int size[2] = {1280, 800};
    Vec3 sphereCentre{0, 0, 0};
    double sphereRadius = 1;
    std::vector<Vec3> corners;
};

} // namespace vekview
