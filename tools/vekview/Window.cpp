#include "Window.h"

#include <epoxy/gl.h>

#include <GLFW/glfw3.h>

namespace vekview {

namespace {
// GLFW reports its errors through a callback; the last one explains a failure.
std::string lastError;

void remember(int, const char* description) {
    lastError = description ? description : "unknown GLFW error";
}
} // namespace

Window::Window(int width, int height, bool visible, const std::string& title) {
    glfwSetErrorCallback(remember);
    lastError.clear();
    if (!glfwInit())
        throw DisplayError("cannot open a window: " +
                           (lastError.empty() ? std::string("no display") : lastError));
    glfwWindowHint(GLFW_CONTEXT_VERSION_MAJOR, 3);
    glfwWindowHint(GLFW_CONTEXT_VERSION_MINOR, 3);
    glfwWindowHint(GLFW_OPENGL_PROFILE, GLFW_OPENGL_CORE_PROFILE);
    glfwWindowHint(GLFW_DEPTH_BITS, 24);
    glfwWindowHint(GLFW_STENCIL_BITS, 8);
    glfwWindowHint(GLFW_VISIBLE, visible ? GLFW_TRUE : GLFW_FALSE);
    window = glfwCreateWindow(width, height, title.c_str(), nullptr, nullptr);
    if (!window) {
        glfwTerminate();
        throw DisplayError("cannot open a window with OpenGL 3.3: " +
                           (lastError.empty() ? std::string("no context") : lastError));
    }
    glfwMakeContextCurrent(window);
    glfwSwapInterval(1);
}

Window::~Window() {
    glfwDestroyWindow(window);
    glfwTerminate();
}

bool Window::closing() const {
    return glfwWindowShouldClose(window) != 0;
}

void Window::framebufferSize(int& width, int& height) const {
    glfwGetFramebufferSize(window, &width, &height);
}

void Window::setTitle(const std::string& title) {
    glfwSetWindowTitle(window, title.c_str());
}

void Window::swap() {
    glfwSwapBuffers(window);
}

} // namespace vekview
