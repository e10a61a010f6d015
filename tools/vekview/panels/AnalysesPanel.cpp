#include <imgui.h>

#include <string>
#include <vector>

#include "Analyses.h"
#include "Panel.h"
#include "Text.h"

namespace vekview {

namespace {
constexpr vekhost::DraftClass draftClasses[] = {
    vekhost::DraftClass::positive, vekhost::DraftClass::negative, vekhost::DraftClass::insufficient,
    vekhost::DraftClass::mixed};

// The host's analyses of a CAD load, run on request: the holes, the draft along the view's
// up direction and the wall thickness. Choosing a hole, a draft class or the thinnest wall
// selects its faces.
class AnalysesPanel : public Panel {
public:
    void draw(PanelContext& context) override {
        Session& session = context.session;
        if (!session.model().shapes) return;
        if (&session.document() != analysed) {
            analysed = &session.document();
            holesRun = false;
        }
        const ImVec2 display = ImGui::GetIO().DisplaySize;
        ImGui::SetNextWindowPos(ImVec2(316, display.y - 208), ImGuiCond_FirstUseEver);
        ImGui::SetNextWindowSize(ImVec2(300, 200), ImGuiCond_FirstUseEver);
        if (ImGui::Begin("Analyses")) {
            Analyses analyses(session);
            holes(session, analyses);
            draft(session, analyses);
            thickness(session, analyses);
        }
        ImGui::End();
    }

private:
    void holes(Session& session, Analyses& analyses) {
        if (ImGui::Button("Holes")) {
            analyses.findHoles();
            holesRun = true;
        }
        const auto& records = session.document().holeInfo->holeRecords;
        if (holesRun && records.empty()) ImGui::TextUnformatted("no holes");
        for (std::size_t i = 0; i < records.size(); ++i) {
            ImGui::PushID(static_cast<int>(i));
            if (ImGui::Selectable(vekhost::utf8FromWide(records[i].name).c_str()))
                analyses.select(analyses.holeFaces(i));
            ImGui::PopID();
        }
    }

    static void draft(Session& session, Analyses& analyses) {
        ImGui::Separator();
        if (ImGui::Button("Draft along up")) analyses.draft(session.camera().axes().up);
        if (!session.document().draft->computed) return;
        for (const vekhost::DraftClass kind : draftClasses) {
            const std::vector<int> faces = analyses.facesOf(kind);
            const std::string label = std::string(vekhost::draftClassName(kind)) + ": " +
                                      std::to_string(faces.size()) + " faces";
            if (ImGui::Selectable(label.c_str())) analyses.select(faces);
        }
    }

    static void thickness(Session& session, Analyses& analyses) {
        ImGui::Separator();
        if (ImGui::Button("Wall thickness")) analyses.thickness();
        const veksg::SCThicknessAnalysis& result = *session.document().thickness;
        if (!result.computed || result.index0 < 0) return;
        if (ImGui::Selectable(("thinnest " + std::to_string(analyses.thinnest())).c_str()))
            analyses.select({analyses.thinnestFace()});
        ImGui::Text("thickest %s", std::to_string(analyses.thickest()).c_str());
    }

    const vekhost::Document* analysed = nullptr;
    bool holesRun = false;
};
} // namespace

std::unique_ptr<Panel> makeAnalysesPanel() {
    return std::make_unique<AnalysesPanel>();
}

} // namespace vekview
