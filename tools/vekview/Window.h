#pragma once

#include <stdexcept>
#include <string>

struct GLFWwindow;

namespace vekview {

/// No window could be opened: no display server, or no OpenGL 3.3 core context on it.
class DisplayError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A GLFW window with a current OpenGL 3.3 core context, depth and stencil; hidden for
/// scripts. One at a time: it starts and ends GLFW.
class Window {
public:
    Window(int width, int height, bool visible, const std::string& title);
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    GLFWwindow* handle() const { return window; }
    bool closing() const;
    /// The size of the drawable area in pixels (larger than the window's on dense screens).
    void framebufferSize(int& width, int& height) const;
    void setTitle(const std::string& title);
    void swap();

private:
    GLFWwindow* window = nullptr;
};

} // namespace vekview
