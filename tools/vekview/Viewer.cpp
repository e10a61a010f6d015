#include "Viewer.h"

#include <epoxy/gl.h>

#include <GLFW/glfw3.h>
#include <imgui.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "Interface.h"
#include "Loading.h"
#include "Session.h"
#include "Window.h"

namespace vekview {

namespace {
constexpr double pi = 3.14159265358979323846;
// Wheel steps scale the distance by this much each.
constexpr double zoomStep = 0.85;

// Mouse and keys on the view, where the panels do not take them.
class Controls {
public:
    Controls(Session& session, PanelContext& context) : session(session), context(context) {}

    void apply() {
        const ImGuiIO& io = ImGui::GetIO();
        const ImVec2 scale = io.DisplayFramebufferScale;
        const double x = io.MousePos.x * scale.x;
        const double y = io.MousePos.y * scale.y;
        const double height = session.height();
        if (!io.WantCaptureMouse) {
            if (ImGui::IsMouseClicked(ImGuiMouseButton_Left)) pressedInView = true;
            if (ImGui::IsMouseDragging(ImGuiMouseButton_Left) && pressedInView) {
                if (io.KeyShift)
                    session.camera().pan(io.MouseDelta.x * scale.x / height,
                                         -io.MouseDelta.y * scale.y / height);
                else
                    session.camera().orbit(io.MouseDelta.x * scale.x / height * pi,
                                           io.MouseDelta.y * scale.y / height * pi);
            }
            if (ImGui::IsMouseDragging(ImGuiMouseButton_Middle))
                session.camera().pan(io.MouseDelta.x * scale.x / height,
                                     -io.MouseDelta.y * scale.y / height);
            if (io.MouseWheel != 0) {
                const double aspect = session.width() / height;
                session.camera().zoom(std::pow(zoomStep, io.MouseWheel),
                                      2 * x / session.width() - 1, 1 - 2 * y / height, aspect);
            }
        }
        // A press and release without a drag is a click.
        if (ImGui::IsMouseReleased(ImGuiMouseButton_Left)) {
            const ImVec2 moved = ImGui::GetMouseDragDelta(ImGuiMouseButton_Left);
            if (pressedInView && !io.WantCaptureMouse &&
                moved.x * moved.x + moved.y * moved.y <
                    io.MouseDragThreshold * io.MouseDragThreshold)
                click(static_cast<int>(x), static_cast<int>(y), io.KeyCtrl);
            pressedInView = false;
        }
        if (!io.WantCaptureKeyboard) keys();
    }

private:
    void click(int x, int y, bool add) {
        if (!context.measuring) {
            session.select(x, y, add);
            return;
        }
        if (const auto result = session.measurement().add(session.pick(x, y)))
            context.lastMeasure = result->text;
    }

    void keys() {
        if (ImGui::IsKeyPressed(GLFW_KEY_F, false)) session.fit();
        for (int key = 0; key < 7; ++key)
            if (ImGui::IsKeyPressed(GLFW_KEY_0 + key, false)) session.preset(key);
        if (ImGui::IsKeyPressed(GLFW_KEY_P, false))
            session.camera().orthographic = !session.camera().orthographic;
        if (ImGui::IsKeyPressed(GLFW_KEY_ESCAPE, false)) {
            session.selection().clear();
            session.selectionChanged();
        }
        if (ImGui::IsKeyPressed(GLFW_KEY_H, false))
            session.setNodeShown(session.selection().focusNode(), false);
    }

    Session& session;
    PanelContext& context;
    bool pressedInView = false;
};

// A progress bar in the middle of the window while a file loads.
void progressFrame(const BackgroundLoad& load) {
    const ImVec2 display = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos(ImVec2(display.x / 2, display.y / 2), ImGuiCond_Always,
                            ImVec2(0.5f, 0.5f));
    ImGui::SetNextWindowSize(ImVec2(420, 0));
    ImGui::Begin("Loading", nullptr,
                 ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoSavedSettings);
    ImGui::TextUnformatted(labelOf(load.path()).c_str());
    const std::string phase = load.phaseName();
    ImGui::ProgressBar(static_cast<float>(load.fraction()), ImVec2(-1, 0),
                       phase.empty() ? "starting" : phase.c_str());
    ImGui::End();
}

std::string titleOf(const std::string& label) {
    return "vekview - " + std::filesystem::path(label).filename().string();
}
} // namespace

int runViewer(const Options& options) {
    std::unique_ptr<Window> window;
    try {
        window = std::make_unique<Window>(1280, 800, true, "vekview");
    } catch (const DisplayError& error) {
        std::fprintf(stderr, "vekview: %s\n", error.what());
        return 1;
    }
    Session session;
    Interface ui(window->handle(), session);
    PanelContext& context = ui.context();
    context.files = options.files;
    Controls controls(session, context);
    auto load = std::make_unique<BackgroundLoad>(
        options.files.empty() ? std::string() : options.files[0], options.deflection);
    while (!window->closing()) {
        // Idle windows wait for input instead of drawing frames no one asked for.
        if (load || ImGui::GetIO().MouseDown[0] || ImGui::GetIO().MouseDown[2])
            glfwPollEvents();
        else
            glfwWaitEventsTimeout(0.25);
        const double start = glfwGetTime();
        int width = 0;
        int height = 0;
        window->framebufferSize(width, height);
        if (width < 1 || height < 1) continue;
        if (load && load->finished()) {
            try {
                session.resize(width, height);
                session.show(load->take(), labelOf(load->path()));
                for (const std::string& warning : session.gpu().warnings)
                    std::fprintf(stderr, "vekview: %s\n", warning.c_str());
                window->setTitle(titleOf(session.label()));
                context.loadError.clear();
            } catch (const std::exception& error) {
                // The first file fails the program as it fails vekload; later ones only say so.
                if (!session.hasModel()) {
                    std::fprintf(stderr, "vekview: %s: %s\n", labelOf(load->path()).c_str(),
                                 error.what());
                    return 1;
                }
                context.loadError = labelOf(load->path()) + ": " + error.what();
            }
            load.reset();
        }
        if (!load && context.requestedFile >= 0) {
            const std::size_t next = static_cast<std::size_t>(context.requestedFile);
            context.requestedFile = -1;
            if (next < context.files.size() && static_cast<int>(next) != context.currentFile) {
                context.currentFile = static_cast<int>(next);
                load = std::make_unique<BackgroundLoad>(context.files[next], options.deflection);
            }
        }
        session.resize(width, height);
        ui.begin(width, height);
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        if (session.hasModel() && !load) {
            controls.apply();
            context.stats = session.draw();
            ui.panels();
        } else {
            glViewport(0, 0, width, height);
            glClearColor(0.93f, 0.94f, 0.96f, 1.0f);
            glClear(GL_COLOR_BUFFER_BIT);
            if (load) progressFrame(*load);
        }
        ui.end();
        window->swap();
        context.frameSeconds = glfwGetTime() - start;
    }
    return 0;
}

} // namespace vekview
