#include "Interface.h"

#include <backends/imgui_impl_glfw.h>
#include <backends/imgui_impl_opengl3.h>
#include <imgui.h>

#include <fstream>

namespace vekview {

namespace {
// Latin-1, Greek, arrows, mathematical and technical symbols and geometric shapes: enough
// for names and for the texts of annotations (⌀, ±, °, ⊥, ⏥, ⌓ and the like).
constexpr ImWchar glyphRanges[] = {0x0020, 0x00FF, 0x0370, 0x03FF, 0x2190,
                                   0x23FF, 0x25A0, 0x25FF, 0};

// ImGui's own font has ASCII alone; without the font file the panels keep it.
void useFont() {
    if (!std::ifstream(VEKVIEW_FONT).good()) return;
    ImGui::GetIO().Fonts->AddFontFromFileTTF(VEKVIEW_FONT, 15.0f, nullptr, glyphRanges);
}
} // namespace

Interface::Interface(GLFWwindow* window, Session& session) : shared(session), all(makePanels()) {
    IMGUI_CHECKVERSION();
    ImGui::CreateContext();
    // Layouts are not written into whatever directory the viewer was started in.
    ImGui::GetIO().IniFilename = nullptr;
    useFont();
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
