#include <imgui.h>

#include <algorithm>
#include <filesystem>

#include "Panel.h"
#include "Session.h"
#include "Text.h"

namespace vekview {

namespace {
const std::vector<int>& listOf(const veksg::Hierarchy& lists, int key) {
    static const std::vector<int> none;
    return key >= 0 && key < lists.size() ? lists.getValue(key) : none;
}

// The product structure of `SCSceneTopo` with a check box per node for its visibility bit.
// The tree opens down to the selection's node whenever that changes, and a click on a node
// selects it.
class ModelTreePanel : public Panel {
public:
    void draw(PanelContext& context) override {
        const ImVec2 display = ImGui::GetIO().DisplaySize;
        ImGui::SetNextWindowPos(ImVec2(8, 8), ImGuiCond_FirstUseEver);
        ImGui::SetNextWindowSize(ImVec2(300, display.y * 0.55f), ImGuiCond_FirstUseEver);
        if (ImGui::Begin("Model tree")) {
            files(context);
            tree(context.session);
        }
        ImGui::End();
    }

private:
    void files(PanelContext& context) {
        if (context.files.size() < 2) return;
        const auto nameOf = [&](int i) {
            return std::filesystem::path(context.files[static_cast<std::size_t>(i)])
                .filename()
                .string();
        };
        if (ImGui::BeginCombo("file", nameOf(context.currentFile).c_str())) {
            for (int i = 0; i < static_cast<int>(context.files.size()); ++i)
                if (ImGui::Selectable(nameOf(i).c_str(), i == context.currentFile))
                    context.requestedFile = i;
            ImGui::EndCombo();
        }
        if (!context.loadError.empty()) ImGui::TextWrapped("%s", context.loadError.c_str());
        ImGui::Separator();
    }

    void tree(Session& session) {
        const veksg::SCSceneTopo& topo = *session.document().topo;
        const int focus = session.selection().focusNode();
        if (focus != lastFocus) {
            // Open every node above the focus, once; the user may close them again.
            openPath.assign(static_cast<std::size_t>(topo.nodes.size()), false);
            std::vector<bool> seen(openPath.size());
            for (int node = nodeParent(topo, focus);
                 node >= 0 && !seen[static_cast<std::size_t>(node)];
                 node = nodeParent(topo, node)) {
                seen[static_cast<std::size_t>(node)] = true;
                openPath[static_cast<std::size_t>(node)] = true;
            }
            scrollTo = focus;
            lastFocus = focus;
        }
        for (int node = 0; node < topo.nodes.size(); ++node)
            if (nodeParent(topo, node) < 0) item(session, topo, node, focus, 0);
    }

    static int nodeParent(const veksg::SCSceneTopo& topo, int node) {
        return node >= 0 && node < topo.nodeRefs1.size() ? topo.nodeRefs1.getValue(node) : -1;
    }

    void item(Session& session, const veksg::SCSceneTopo& topo, int node, int focus, int depth) {
        // A hierarchy deeper than this is not a product structure any screen can show.
        constexpr int deepest = 64;
        const auto& children = listOf(topo.nodeLists3, node);
        const std::vector<int>& chosen = session.selection().keys(nodeKeys);
        const bool selected =
            node == focus || std::find(chosen.begin(), chosen.end(), node) != chosen.end();
        ImGuiTreeNodeFlags flags =
            ImGuiTreeNodeFlags_OpenOnArrow | ImGuiTreeNodeFlags_SpanAvailWidth;
        if (children.empty() || depth >= deepest)
            flags |= ImGuiTreeNodeFlags_Leaf | ImGuiTreeNodeFlags_NoTreePushOnOpen;
        if (selected) flags |= ImGuiTreeNodeFlags_Selected;
        ImGui::PushID(node);
        bool shown = session.nodeBit(node);
        if (ImGui::Checkbox("##shown", &shown)) session.setNodeShown(node, shown);
        ImGui::SameLine();
        std::string name = vekhost::utf8FromWide(topo.nodes.getValue(node).name());
        if (name.empty()) name = "node " + std::to_string(node);
        // Shown greyed out when a node above it is hidden.
        const bool dimmed = shown && !session.visibility().nodeShown(node);
        if (dimmed)
            ImGui::PushStyleColor(ImGuiCol_Text, ImGui::GetStyleColorVec4(ImGuiCol_TextDisabled));
        if (static_cast<std::size_t>(node) < openPath.size() &&
            openPath[static_cast<std::size_t>(node)]) {
            ImGui::SetNextItemOpen(true);
            openPath[static_cast<std::size_t>(node)] = false;
        }
        const bool open = ImGui::TreeNodeEx("node", flags, "%s", name.c_str());
        if (dimmed) ImGui::PopStyleColor();
        if (ImGui::IsItemClicked() && !ImGui::IsItemToggledOpen()) {
            session.selection().select(nodeKeys, node, ImGui::GetIO().KeyCtrl);
            session.selectionChanged();
            lastFocus = session.selection().focusNode();
        }
        if (node == scrollTo) {
            ImGui::SetScrollHereY();
            scrollTo = -1;
        }
        if (open && !(flags & ImGuiTreeNodeFlags_NoTreePushOnOpen)) {
            for (const int child : children)
                if (child >= 0 && child < topo.nodes.size())
                    item(session, topo, child, focus, depth + 1);
            ImGui::TreePop();
        }
        ImGui::PopID();
    }

    int lastFocus = -2;
    int scrollTo = -1;
    std::vector<bool> openPath;
};
} // namespace

std::unique_ptr<Panel> makeModelTreePanel() {
    return std::make_unique<ModelTreePanel>();
}

} // namespace vekview
