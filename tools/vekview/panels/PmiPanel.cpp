#include <imgui.h>

#include <algorithm>

#include "Panel.h"
#include "Session.h"
#include "Text.h"

namespace vekview {

namespace {
// The file's annotations; choosing one selects it with the faces and edges it applies to.
// Saved views are restored from the Views panel, which lists the file's views with the user's.
class PmiPanel : public Panel {
public:
    void draw(PanelContext& context) override {
        Session& session = context.session;
        const veksg::SCPmi& pmi = *session.document().pmi;
        if (pmi.pmis.size() == 0) return;
        const ImVec2 display = ImGui::GetIO().DisplaySize;
        // Below Measure, down to the frame-time overlay in the corner.
        const float top = display.y * 0.45f + 174;
        ImGui::SetNextWindowPos(ImVec2(display.x - 318, top), ImGuiCond_FirstUseEver);
        ImGui::SetNextWindowSize(ImVec2(310, std::max(80.0f, display.y - top - 100)),
                                 ImGuiCond_FirstUseEver);
        if (ImGui::Begin("PMI")) {
            const std::vector<int>& chosen = session.selection().keys(annotationKeys);
            for (int key = 0; key < pmi.pmis.size(); ++key) {
                const auto& annotation = pmi.pmis.getValue(key);
                if (!annotation) continue;
                const bool selected = std::find(chosen.begin(), chosen.end(), key) != chosen.end();
                ImGui::PushID(key);
                if (ImGui::Selectable(vekhost::utf8FromWide(annotation->name()).c_str(),
                                      selected)) {
                    session.selection().selectAnnotation(key);
                    session.selectionChanged();
                }
                ImGui::PopID();
            }
        }
        ImGui::End();
    }
};
} // namespace

std::unique_ptr<Panel> makePmiPanel() {
    return std::make_unique<PmiPanel>();
}

} // namespace vekview
