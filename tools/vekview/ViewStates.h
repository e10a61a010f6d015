#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Camera.h"
#include "Document.h"
#include "Renderer.h"

namespace vekview {

/// Command ids under which the viewer files its states in `SCStates` and registers the
/// executors that apply them.
constexpr int cameraCommand = 1;
constexpr int sectionCommand = 2;

/// Saved views and the section plane, kept in the document the way the data model holds
/// view states:
///
/// - a saved view is a camera state made by `StateFactory` (command 1, sequence id the key of
///   its view) in `SCStates::typeStates` under its command, and a `View` in `SCPmi::views`
///   with the name, the same camera and the projection (`viewValue` 1 orthographic, 0
///   perspective);
/// - the section is a section state (command 2) with one `Section` (origin on the plane,
///   normal towards the side taken away; none when the section is off), the latest at the
///   back of its command's sequence;
/// - every state applied is appended to `SCStates::firstStates`, oldest first.
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
    /// Restores the view under key `key` of `SCPmi::views`.
    bool restoreView(int key);
    /// Keys of the saved views that have a camera state, in key order.
    std::vector<int> savedViews() const;

    /// Records the plane as a section state and applies it; `active` false turns it off.
    void setSection(const SectionPlane& plane);

private:
    void apply(const std::shared_ptr<veksg::IState>& state);
    std::shared_ptr<veksg::IState> cameraStateOf(int viewKey) const;

    vekhost::Document& doc;
    veksg::StateFactory factory;
    Camera& camera;
};

} // namespace vekview
