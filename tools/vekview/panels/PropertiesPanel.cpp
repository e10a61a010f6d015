#include <imgui.h>

#include "Panel.h"
#include "Session.h"
#include "Text.h"

namespace vekview {

namespace {
template <typename V>
bool has(const veksg::Container<int, V>& table, int key) {
    return key >= 0 && key < table.size();
}

void point(const char* label, const veksg::Point3& p) {
    ImGui::Text("%s  %.4g, %.4g, %.4g", label, p[0], p[1], p[2]);
}

void heading(const char* title) {
    ImGui::Separator();
    ImGui::TextDisabled("%s", title);
}

void swatch(const char* label, float r, float g, float b) {
    ImGui::ColorButton(label, ImVec4(r, g, b, 1), ImGuiColorEditFlags_NoTooltip, ImVec2(14, 14));
    ImGui::SameLine();
    ImGui::Text("%s  %.2f, %.2f, %.2f", label, r, g, b);
}

// The records of the selection: its first face, edge or mesh, and the node they belong to,
// with the node's attributes from `SCAttributes`.
class PropertiesPanel : public Panel {
public:
    void draw(PanelContext& context) override {
        const ImVec2 display = ImGui::GetIO().DisplaySize;
        ImGui::SetNextWindowPos(ImVec2(display.x - 318, 8), ImGuiCond_FirstUseEver);
        ImGui::SetNextWindowSize(ImVec2(310, display.y * 0.45f), ImGuiCond_FirstUseEver);
        if (ImGui::Begin("Properties")) {
            Session& session = context.session;
            Selection& selection = session.selection();
            if (selection.empty()) ImGui::TextDisabled("Click the model or a node of the tree.");
            if (!selection.keys(faceKeys).empty())
                showFace(session, selection.keys(faceKeys).front());
            if (!selection.keys(edgeKeys).empty())
                showEdge(session, selection.keys(edgeKeys).front());
            if (!selection.keys(meshKeys).empty())
                showMesh(session, selection.keys(meshKeys).front());
            const int node = selection.focusNode();
            if (node >= 0) showNode(session, node);
        }
        ImGui::End();
    }

private:
    static void showFace(Session& session, int key) {
        const vekhost::Document& doc = session.document();
        if (!has(doc.topo->faces, key)) return;
        const veksg::Face& face = doc.topo->faces.getValue(key);
        heading("Face");
        ImGui::Text("key %d%s", face.id, face.flag ? ", reversed" : "");
        const int surface = has(doc.topo->faceRefs1, key) ? doc.topo->faceRefs1.getValue(key) : -1;
        if (has(doc.topo->refs14b, surface))
            ImGui::Text("surface %d, %s", surface,
                        surfaceTypeName(doc.topo->refs14b.getValue(surface)));
        if (const auto area = session.measurement().faceArea(key)) ImGui::Text("area  %.6g", *area);
        if (has(doc.resources->primitivesA, key)) {
            const veksg::PrimitiveInfo& range = doc.resources->primitivesA.getValue(key);
            swatch("colour", range.color[0], range.color[1], range.color[2]);
            ImGui::Text("triangles %d from vertex %d", range.count / 3, range.first);
        }
        if (has(doc.topo->faceLists2, key))
            ImGui::Text("edges %zu", doc.topo->faceLists2.getValue(key).size());
        point("box min", face.pointA);
        point("box max", face.pointB);
    }

    static void showEdge(Session& session, int key) {
        const vekhost::Document& doc = session.document();
        if (!has(doc.topo->edges, key)) return;
        const veksg::Edge& edge = doc.topo->edges.getValue(key);
        heading("Edge");
        ImGui::Text("key %d, %s", edge.id, curveTypeName(edge.kind));
        point("start", edge.pointA);
        point("end", edge.pointB);
    }

    static void showMesh(Session& session, int key) {
        const vekhost::Document& doc = session.document();
        if (!has(doc.scene->meshes, key) || !doc.scene->meshes.getValue(key)) return;
        const veksg::Mesh& mesh = *doc.scene->meshes.getValue(key);
        heading("Mesh");
        ImGui::Text("key %d, triangles %zu", key,
                    (mesh.vn.size() + mesh.vnc.size() + mesh.vnt.size()) / 3);
        if (has(doc.scene->meshMaterials, key) && doc.scene->meshMaterials.getValue(key).valid) {
            const auto& diffuse = doc.scene->meshMaterials.getValue(key).diffuse;
            swatch("diffuse", diffuse[0], diffuse[1], diffuse[2]);
        }
        if (has(doc.scene->textures, key) && doc.scene->textures.getValue(key))
            ImGui::TextWrapped(
                "texture %s",
                vekhost::utf8FromWide(doc.scene->textures.getValue(key)->path).c_str());
    }

    static void showNode(Session& session, int key) {
        const vekhost::Document& doc = session.document();
        if (!has(doc.topo->nodes, key)) return;
        const veksg::Node& node = doc.topo->nodes.getValue(key);
        heading("Node");
        ImGui::Text("key %d%s", node.id, node.flag ? ", shows geometry" : "");
        if (node.ref >= 0 && node.ref != key) ImGui::Text("same part as node %d", node.ref);
        if (has(doc.topo->nodeLists10, key)) {
            for (const int attribute : doc.topo->nodeLists10.getValue(key)) {
                if (!has(doc.attributes->attributes, attribute)) continue;
                const auto& value = doc.attributes->attributes.getValue(attribute);
                if (!value || !value->get()) continue;
                ImGui::Text("%s  %s", vekhost::utf8FromWide(value->key()).c_str(),
                            vekhost::utf8FromWide(value->get().get()).c_str());
            }
        }
        if (has(doc.topo->nodeLists9, key) && !doc.topo->nodeLists9.getValue(key).empty()) {
            const int mesh = doc.topo->nodeLists9.getValue(key).front();
            if (has(doc.scene->meshMaterials, mesh) &&
                doc.scene->meshMaterials.getValue(mesh).valid) {
                const auto& diffuse = doc.scene->meshMaterials.getValue(mesh).diffuse;
                swatch("colour", diffuse[0], diffuse[1], diffuse[2]);
            }
        }
        if (has(doc.scene->transforms, key) && doc.scene->transforms.getValue(key).valid) {
            const auto& m = doc.scene->transforms.getValue(key).matrix;
            ImGui::Text("placed at  %.4g, %.4g, %.4g", m[12], m[13], m[14]);
        }
        if (has(doc.scene->boxes, key) && doc.scene->boxes.getValue(key).valid) {
            point("box min", doc.scene->boxes.getValue(key).min);
            point("box max", doc.scene->boxes.getValue(key).max);
        }
        ImGui::Text("faces %zu, edges %zu",
                    has(doc.topo->nodeLists4, key) ? doc.topo->nodeLists4.getValue(key).size() : 0,
                    has(doc.topo->nodeLists5, key) ? doc.topo->nodeLists5.getValue(key).size() : 0);
    }
};
} // namespace

std::unique_ptr<Panel> makePropertiesPanel() {
    return std::make_unique<PropertiesPanel>();
}

} // namespace vekview
