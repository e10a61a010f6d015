#include <imgui.h>

#include "Panel.h"
#include "Session.h"
#include "Text.h"

namespace vekview {

namespace {
constexpr const char* modeNames[] = {"points", "faces or edges", "radius of an edge",
                                     "angle of two planes"};

// The measurement mode, its results, and their labels over the view.
class MeasurePanel : public Panel {
public:
    void draw(PanelContext& context) override {
        Session& session = context.session;
        labels(session);
        const ImVec2 display = ImGui::GetIO().DisplaySize;
        ImGui::SetNextWindowPos(ImVec2(display.x - 318, display.y * 0.45f + 16),
                                ImGuiCond_FirstUseEver);
        ImGui::SetNextWindowSize(ImVec2(310, 150), ImGuiCond_FirstUseEver);
        if (ImGui::Begin("Measure")) {
            ImGui::Checkbox("clicks measure", &context.measuring);
            int mode = static_cast<int>(session.measurement().mode());
            if (ImGui::Combo("what", &mode, modeNames, 4))
                session.measurement().setMode(static_cast<MeasureMode>(mode));
            if (context.measuring)
                ImGui::Text("%d more pick%s", session.measurement().picksNeeded(),
                            session.measurement().picksNeeded() == 1 ? "" : "s");
            if (!context.lastMeasure.empty()) ImGui::TextWrapped("%s", context.lastMeasure.c_str());
            if (ImGui::Button("Clear")) {
                session.measurement().clear();
                context.lastMeasure.clear();
            }
            for (const auto& measure : session.document().tempGraphics->measures)
                if (measure)
                    ImGui::BulletText("%s", vekhost::utf8FromWide(measure->measureText).c_str());
        }
        ImGui::End();
    }

private:
    // The labels of temporary graphics where they stand, behind the panels.
    static void labels(Session& session) {
        ImDrawList* draw = ImGui::GetBackgroundDrawList();
        const ImVec2 scale = ImGui::GetIO().DisplayFramebufferScale;
        for (const auto& label : session.document().tempGraphics->texts3d) {
            if (!label) continue;
            double x = 0;
            double y = 0;
            const Vec3 at{label->position[0], label->position[1], label->position[2]};
            if (!session.project(at, x, y)) continue;
            const std::string text = vekhost::utf8FromWide(label->text);
            const ImVec2 place(static_cast<float>(x) / scale.x + 6,
                               static_cast<float>(y) / scale.y - 18);
            const ImVec2 size = ImGui::CalcTextSize(text.c_str());
            draw->AddRectFilled(ImVec2(place.x - 3, place.y - 1),
                                ImVec2(place.x + size.x + 3, place.y + size.y + 1),
                                IM_COL32(255, 255, 255, 220), 3);
            draw->AddText(place, IM_COL32(13, 77, 242, 255), text.c_str());
        }
    }
};
} // namespace

std::unique_ptr<Panel> makeMeasurePanel() {
    return std::make_unique<MeasurePanel>();
}

} // namespace vekview
