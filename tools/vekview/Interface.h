#pragma once

#include <memory>
#include <vector>

#include "panels/Panel.h"

struct GLFWwindow;

namespace vekview {

/// The panels over the 3D view, drawn with Dear ImGui through its GLFW and OpenGL 3 back
/// ends. One at a time, in the window whose context is current.
class Interface {
public:
    Interface(GLFWwindow* window, Session& session);
    ~Interface();
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

    PanelContext& context() { return shared; }
    /// Starts a frame of width x height pixels: takes the input since the last one.
    void begin(int width, int height);
    /// Lays out every panel; the model must be shown.
    void panels();
    /// Draws what was laid out into the bound framebuffer.
    void end();

private:
    PanelContext shared;
    std::vector<std::unique_ptr<Panel>> all;
};

} // namespace vekview
