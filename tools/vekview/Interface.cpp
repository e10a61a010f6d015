#include "Interface.h"

#include <backends/imgui_impl_glfw.h>
#include <backends/imgui_impl_opengl3.h>
#include <imgui.h>

namespace vekview {

Interface::Interface(GLFWwindow* window, Session& session) : shared(session), all(makePanels()) {
    IMGUI_CHECKVERSION();
    ImGui::CreateContext();
    // Layouts are not written into whatever directory the viewer was started in.
    ImGui::GetIO().IniFilename = nullptr;
    ImGui::StyleColorsLight();
    ImGui::GetStyle().WindowRounding = 4;
    ImGui_ImplGlfw_InitForOpenGL(window, true);
    ImGui_ImplOpenGL3_Init("#version 330 core");
}

Interface::~Interface() {
    ImGui_ImplOpenGL3_Shutdown();
    ImGui_ImplGlfw_Shutdown();
    ImGui::DestroyContext();
}

void Interface::begin(int width, int height) {
    ImGui_ImplOpenGL3_NewFrame();
    ImGui_ImplGlfw_NewFrame();
    // The size of the view being drawn, which for scripts is no window's.
    ImGuiIO& io = ImGui::GetIO();
    const ImVec2 scale = io.DisplayFramebufferScale;
    io.DisplaySize =
        ImVec2(static_cast<float>(width) / scale.x, static_cast<float>(height) / scale.y);
    ImGui::NewFrame();
}

void Interface::panels() {
    for (const auto& panel : all)
        panel->draw(shared);
}

void Interface::end() {
    ImGui::Render();
    ImGui_ImplOpenGL3_RenderDrawData(ImGui::GetDrawData());
}

} // namespace vekview
