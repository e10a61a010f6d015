#include "SavedViews.h"

#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <XCAFDoc_ClippingPlaneTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_View.hxx>
#include <XCAFDoc_ViewTool.hxx>
#include <XCAFView_Object.hxx>
#include <gp_Pln.hxx>

#include <algorithm>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "Bounds.h"
#include "Text.h"
#include "veksg/StateFactory.h"

namespace vekhost {

namespace {
veksg::Point3 toPoint(const gp_XYZ& p) {
    return {static_cast<float>(p.X()), static_cast<float>(p.Y()), static_cast<float>(p.Z())};
}

Vec3 vec(const veksg::Point3& p) {
    return {p[0], p[1], p[2]};
}

class ViewReader {
public:
    ViewReader(const CadShapes& shapes, const PmiKeys& annotations, Document& document)
        : annotations(annotations), doc(document), pmi(*document.pmi),
          main(shapes.document()->Main()) {
        for (int node = 0; node < shapes.nodeCount(); ++node)
            if (!shapes.node(node).IsNull())
                nodesOf[shapes.node(node).TShape().get()].push_back(node);
        // Faces, not node boxes: those are summed up only when the load completes.
        for (const veksg::Face& face : document.topo->faces) {
            model.add(vec(face.pointA));
            model.add(vec(face.pointB));
        }
    }

    void read() {
        const Handle(XCAFDoc_ViewTool) views = XCAFDoc_DocumentTool::ViewTool(main);
        TDF_LabelSequence labels;
        views->GetViewLabels(labels);
        for (const TDF_Label& label : labels) {
            Handle(XCAFDoc_View) attribute;
            if (!label.FindAttribute(XCAFDoc_View::GetID(), attribute)) continue;
            const Handle(XCAFView_Object) camera = attribute->GetObject();
            if (camera.IsNull()) continue;
            view(*views, label, *camera);
        }
    }

private:
    void view(const XCAFDoc_ViewTool& tool, const TDF_Label& label, XCAFView_Object& camera) {
        auto saved = std::make_shared<veksg::View>();
        const int key = pmi.views.size();
        saved->id = key;
        saved->viewIndex = key;
        const std::wstring name = camera.Name().IsNull() ? L"View " + std::to_wstring(key + 1)
                                                         : wideFromUtf8(camera.Name()->ToCString());
        saved->setName(name.c_str());
        const gp_XYZ eye = camera.ProjectionPoint().XYZ();
        const gp_XYZ direction = camera.ViewDirection().XYZ();
        // The target is where the line of sight passes the model's centre.
        gp_XYZ middle = eye + direction;
        if (model.valid) {
            const gp_XYZ centre((model.min[0] + model.max[0]) / 2,
                                (model.min[1] + model.max[1]) / 2,
                                (model.min[2] + model.max[2]) / 2);
            const double along = (centre - eye).Dot(direction);
            if (along > 1e-9) middle = eye + direction * along;
        }
        saved->position = toPoint(eye);
        saved->target = toPoint(middle);
        saved->up = toPoint(camera.UpDirection().XYZ());
        saved->text1 = camera.Type() == XCAFView_ProjectionType_Central ? L"central" : L"parallel";
        saved->floatList = {static_cast<float>(camera.ZoomFactor()),
                            static_cast<float>(camera.WindowHorizontalSize()),
                            static_cast<float>(camera.WindowVerticalSize())};

        TDF_LabelSequence linked;
        tool.GetRefShapeLabel(label, linked);
        for (const TDF_Label& shape : linked) {
            const TopoDS_Shape geometry = XCAFDoc_ShapeTool::GetShape(shape);
            if (geometry.IsNull()) continue;
            const auto found = nodesOf.find(geometry.TShape().get());
            if (found == nodesOf.end()) continue;
            for (const int node : found->second)
                saved->list2.push_back(node);
        }
        linked.Clear();
        tool.GetRefGDTLabel(label, linked);
        for (const TDF_Label& annotation : linked) {
            const auto found = annotations.find(labelEntry(annotation));
            if (found != annotations.end()) saved->list1.push_back(found->second);
        }
        for (std::vector<int>* keys : {&saved->list1, &saved->list2}) {
            std::sort(keys->begin(), keys->end());
            keys->erase(std::unique(keys->begin(), keys->end()), keys->end());
        }
        linked.Clear();
        tool.GetRefClippingPlaneLabel(label, linked);
        std::vector<bool> capped;
        for (const TDF_Label& plane : linked) {
            const int section = this->section(plane);
            if (section < 0) continue;
            if (std::find(saved->list3.begin(), saved->list3.end(), section) != saved->list3.end())
                continue;
            saved->list3.push_back(section);
            capped.push_back(pmi.sections.getValue(section)->sectionSetting != 0);
        }

        pmi.views.insert(saved);
        pmi.relation9.resizeToFitKey(key, {});
        pmi.relation8.resizeToFitKey(key, {});
        pmi.relation10.resizeToFitKey(key, {});
        pmi.relation9.setValue(key, saved->list1);
        pmi.relation8.setValue(key, saved->list2);
        pmi.relation10.setValue(key, saved->list3);
        for (const int annotation : saved->list1)
            pmi.relation13.addChild(annotation, key);
        for (const int node : saved->list2)
            pmi.relation2.addChild(node, key);

        veksg::StateFactory factory;
        veksg::StateContainer& states = doc.states->typeStates->containers[key];
        std::shared_ptr<veksg::IState> cameraState =
            factory.createCameraState(saved->position, saved->target, saved->up);
        cameraState->setCmdId(viewCameraCommand);
        cameraState->setSeqId(0);
        states.states.push_back(cameraState);
        if (!saved->list3.empty()) {
            std::vector<std::shared_ptr<veksg::Section>> cuts;
            for (const int section : saved->list3)
                cuts.push_back(pmi.sections.getValue(section));
            std::shared_ptr<veksg::IState> cut =
                factory.createSectionState(cuts, saved->list3, 0, capped, nullptr);
            cut->setCmdId(viewSectionCommand);
            cut->setSeqId(1);
            states.states.push_back(cut);
        }
    }

    // The section of a clipping plane, made the first time a view uses it; -1 for a label
    // that holds no plane.
    int section(const TDF_Label& label) {
        const std::string name = labelEntry(label);
        const auto known = sections.find(name);
        if (known != sections.end()) return known->second;
        gp_Pln plane;
        TCollection_ExtendedString title;
        Standard_Boolean capping = Standard_False;
        if (!XCAFDoc_DocumentTool::ClippingPlaneTool(main)->GetClippingPlane(label, plane, title,
                                                                             capping))
            return -1;
        auto cut = std::make_shared<veksg::Section>();
        cut->origin = toPoint(plane.Location().XYZ());
        cut->normal = toPoint(plane.Axis().Direction().XYZ());
        cut->sectionSetting = capping ? 1 : 0;
        std::u16string text(title.ToExtString(), title.ToExtString() + title.Length());
        cut->setName(wideFromUtf16(text.c_str()).c_str());
        cut->id = pmi.sections.size();
        const int key = pmi.sections.insert(cut);
        sections.emplace(name, key);
        return key;
    }

    const PmiKeys& annotations;
    Document& doc;
    veksg::SCPmi& pmi;
    TDF_Label main;
    std::unordered_map<const TopoDS_TShape*, std::vector<int>> nodesOf;
    std::map<std::string, int> sections;
    Box3 model;
};
} // namespace

void readSavedViews(const CadShapes& shapes, const PmiKeys& annotations, Document& document) {
    TDF_LabelSequence views;
    XCAFDoc_DocumentTool::ViewTool(shapes.document()->Main())->GetViewLabels(views);
    if (!views.IsEmpty()) ViewReader(shapes, annotations, document).read();
}

} // namespace vekhost
