#include <imgui.h>

#include "Panel.h"
#include "Session.h"

namespace vekview {

namespace {
// Frames per second, triangles and draw calls in the view's lower right corner.
class StatsOverlay : public Panel {
public:
    void draw(PanelContext& context) override {
        // Smoothed, so that the numbers can be read.
        average = average > 0 ? 0.9 * average + 0.1 * context.frameSeconds : context.frameSeconds;
        const ImVec2 display = ImGui::GetIO().DisplaySize;
        ImGui::SetNextWindowPos(ImVec2(display.x - 8, display.y - 8), ImGuiCond_Always,
                                ImVec2(1, 1));
        ImGui::SetNextWindowBgAlpha(0.6f);
        const ImGuiWindowFlags flags = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoInputs |
                                       ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoNav |
                                       ImGuiWindowFlags_NoSavedSettings;
        if (ImGui::Begin("Frame", nullptr, flags)) {
            ImGui::Text("%.1f fps, %.2f ms", average > 0 ? 1 / average : 0.0, average * 1000);
            ImGui::Text("triangles %lld, line segments %lld", context.stats.triangles,
                        context.stats.lineSegments);
            ImGui::Text("draw calls %d", context.stats.drawCalls);
            const Session& session = context.session;
            ImGui::Text("load %.0f ms, upload %.0f ms", session.model().times.total() * 1000,
                        session.uploadSeconds() * 1000);
        }
        ImGui::End();
    }

private:
    double average = 0;
};
} // namespace

std::unique_ptr<Panel> makeStatsOverlay() {
    return std::make_unique<StatsOverlay>();
}

} // namespace vekview
