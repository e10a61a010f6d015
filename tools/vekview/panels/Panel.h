#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Renderer.h"

namespace vekview {

class Session;

/// What the panels share besides the session.
struct PanelContext {
    explicit PanelContext(Session& session) : session(session) {}

    Session& session;
    /// Clicks in the view measure instead of selecting.
    bool measuring = false;
    /// The last measurement's label, or why it failed.
    std::string lastMeasure;
    /// The last frame's numbers and the time between the last frames, in seconds.
    FrameStats stats;
    double frameSeconds = 0;
    /// The files the viewer was given (empty for the sample), the one shown, and the one the
    /// user asked for next (-1 for none).
    std::vector<std::string> files;
    int currentFile = 0;
    int requestedFile = -1;
    /// Why the last file asked for did not load; empty when it did.
    std::string loadError;
};

/// One window of the interface. A panel draws itself with Dear ImGui each frame and reads
/// and changes the model through the session.
class Panel {
public:
    Panel() = default;
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;
    virtual ~Panel();

    virtual void draw(PanelContext& context) = 0;
};

// Each panel is made in its own file.
std::unique_ptr<Panel> makeModelTreePanel();
std::unique_ptr<Panel> makePropertiesPanel();
std::unique_ptr<Panel> makeViewsPanel();
std::unique_ptr<Panel> makeMeasurePanel();
std::unique_ptr<Panel> makePmiPanel();
std::unique_ptr<Panel> makeAnalysesPanel();
std::unique_ptr<Panel> makeStatsOverlay();

/// Every panel, in the order they are drawn: a new panel adds its line here.
std::vector<std::unique_ptr<Panel>> makePanels();

} // namespace vekview
