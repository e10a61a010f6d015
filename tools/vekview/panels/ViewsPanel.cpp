#include <imgui.h>

#include <cmath>

#include "Panel.h"
#include "Session.h"
#include "Text.h"

namespace vekview {

namespace {
constexpr const char* presetNames[] = {"Iso", "Front", "Top", "Right", "Back", "Bottom", "Left"};

// Preset orientations, the projection, saved views and the section plane.
class ViewsPanel : public Panel {
public:
    void draw(PanelContext& context) override {
        const ImVec2 display = ImGui::GetIO().DisplaySize;
        ImGui::SetNextWindowPos(ImVec2(8, display.y * 0.55f + 16), ImGuiCond_FirstUseEver);
        ImGui::SetNextWindowSize(ImVec2(300, display.y * 0.45f - 24), ImGuiCond_FirstUseEver);
        if (ImGui::Begin("Views")) {
            Session& session = context.session;
            presets(session);
            saved(session);
            section(session);
        }
        ImGui::End();
    }

private:
    static void presets(Session& session) {
        for (int key = 0; key < 7; ++key) {
            if (key > 0 && key != 4) ImGui::SameLine();
            if (ImGui::Button(presetNames[key])) session.preset(key);
        }
        ImGui::SameLine();
        if (ImGui::Button("Fit")) session.fit();
        bool perspective = !session.camera().orthographic;
        if (ImGui::Checkbox("perspective", &perspective))
            session.camera().orthographic = !perspective;
    }

    void saved(Session& session) {
        ImGui::Separator();
        ImGui::SetNextItemWidth(150);
        ImGui::InputText("##name", name, sizeof name);
        ImGui::SameLine();
        if (ImGui::Button("Save view") && name[0] != '\0')
            session.views().saveView(vekhost::wideFromUtf8(name));
        for (const int key : session.views().savedViews()) {
            const auto& view = session.document().pmi->views.getValue(key);
            ImGui::PushID(key);
            if (ImGui::Selectable(vekhost::utf8FromWide(view->name()).c_str()))
                session.views().restoreView(key);
            ImGui::PopID();
        }
    }

    // The plane's normal is an axis either way or the view direction; its offset is dragged
    // along it across the model's sphere.
    static void section(Session& session) {
        ImGui::Separator();
        SectionPlane plane = session.section();
        bool changed = ImGui::Checkbox("section", &plane.active);
        static constexpr const char* directions[] = {"+X", "-X", "+Y", "-Y", "+Z", "-Z", "view"};
        int direction = 6;
        for (int axis = 0; axis < 3; ++axis)
            if (std::fabs(plane.normal[static_cast<std::size_t>(axis)]) > 0.999)
                direction = 2 * axis + (plane.normal[static_cast<std::size_t>(axis)] < 0 ? 1 : 0);
        ImGui::SameLine();
        ImGui::SetNextItemWidth(70);
        if (ImGui::Combo("normal", &direction, directions, 7)) {
            Vec3 normal = session.camera().axes().toward;
            if (direction < 6) {
                normal = {0, 0, 0};
                normal[static_cast<std::size_t>(direction / 2)] = direction % 2 ? -1.0 : 1.0;
            }
            plane.normal = normal;
            plane.offset = dot(normal, session.centre());
            changed = true;
        }
        const double middle = dot(plane.normal, session.centre());
        float offset = static_cast<float>(plane.offset - middle);
        const auto reach = static_cast<float>(session.radius());
        if (ImGui::SliderFloat("offset", &offset, -reach, reach)) {
            plane.offset = middle + offset;
            changed = true;
        }
        if (changed) session.setSection(plane);
    }

    char name[64] = "view 1";
};
} // namespace

std::unique_ptr<Panel> makeViewsPanel() {
    return std::make_unique<ViewsPanel>();
}

} // namespace vekview
