#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "Camera.h"
#include "Document.h"
#include "Renderer.h"
#include "ViewCommands.h"

namespace vekview {

/// Command ids of the viewer's states and of the executors that apply them: those of the
/// views that files bring, so that the viewer restores those too.
constexpr int cameraCommand = vekhost::viewCameraCommand;
constexpr int sectionCommand = vekhost::viewSectionCommand;

/// Saved views and the section plane, kept in the document the way the data model holds
/// view states:
///
/// - a saved view is a `View` in `SCPmi::views` with the name, the camera and the projection
///   (`viewValue` 1 orthographic, 0 perspective), and the sequence of `SCStates::typeStates`
///   under the view's key: a camera state made by `StateFactory` (command 1), then, when the
///   section was on, a section state (command 2) with that plane;
/// - the section is a section state (command 2) with one `Section` (origin on the plane,
///   normal towards the side taken away; none when the section is off);
/// - every state applied is appended to `SCStates::firstStates`, oldest first (the latest
///   256).
///
/// States are applied by the executors registered in `SCStates` under their command ids,
/// which move the camera and the section plane given here. The document, camera and plane
/// must outlive this object; it takes its executors out of the registry when it goes.
class ViewStates {
public:
    ViewStates(vekhost::Document& document, Camera& camera, SectionPlane& section);
    ~ViewStates();
    ViewStates(const ViewStates&) = delete;
    ViewStates& operator=(const ViewStates&) = delete;

    /// Saves the camera under `name`, replacing a view of that name; returns its key.
    int saveView(const std::wstring& name);
    /// Restores the view named `name`; false when there is none.
    bool restoreView(const std::wstring& name);
    /// Restores the view under key `key` of `SCPmi::views`: its camera, and its cut or none.
    bool restoreView(int key);
    /// Keys of the saved views that have a camera state, in key order.
    std::vector<int> savedViews() const;

    /// Records the plane as a section state and applies it; `active` false turns it off.
    void setSection(const SectionPlane& cut);

private:
    void apply(const std::shared_ptr<veksg::IState>& state);
    std::shared_ptr<veksg::IState> sectionState(const SectionPlane& cut);
    const std::deque<std::shared_ptr<veksg::IState>>* statesOf(int viewKey) const;
    std::shared_ptr<veksg::IState> cameraStateOf(int viewKey) const;

    vekhost::Document& doc;
    veksg::StateFactory factory;
    Camera& camera;
    SectionPlane& plane;
};

} // namespace vekview
