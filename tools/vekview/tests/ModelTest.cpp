// What the viewer makes of the data model without drawing: the camera's arithmetic, the
// selection and the batches it lights up, view states, measurements on the B-rep.
#include <gtest/gtest.h>

#include <GeomAbs_CurveType.hxx>

#include "Batches.h"
#include "Camera.h"
#include "Loader.h"
#include "Measurement.h"
#include "Selection.h"
#include "ViewStates.h"

namespace vekview::test {
namespace {

// Where a world point lands in normalized device coordinates.
std::array<double, 2> ndc(const Camera& camera, const Vec3& p, double aspect) {
    const Vec4 clip = transform(camera.projection(aspect) * camera.view(), {p[0], p[1], p[2], 1});
    return {clip[0] / clip[3], clip[1] / clip[3]};
}

TEST(ViewerCamera, ZoomKeepsThePointUnderTheCursorInBothProjections) {
    for (const bool orthographic : {true, false}) {
        Camera camera;
        camera.orthographic = orthographic;
        camera.setScene({0, 0, 0}, 10);
        camera.eye = {3, -40, 12};
        camera.target = {1, 2, 0};
        camera.up = {0, 0, 1};
        const double aspect = 1.6;
        const ViewAxes axes = camera.axes();
        const double half = camera.viewHeight() / 2;
        // The point under (0.5, -0.25) on the plane through the target.
        const Vec3 under =
            camera.target + axes.right * (0.5 * aspect * half) + axes.up * (-0.25 * half);
        camera.zoom(0.6, 0.5, -0.25, aspect);
        const auto after = ndc(camera, under, aspect);
        EXPECT_NEAR(after[0], 0.5, 1e-9);
        EXPECT_NEAR(after[1], -0.25, 1e-9);
        EXPECT_NEAR(camera.viewHeight(), 2 * half * 0.6, 1e-9);
    }
}

TEST(ViewerCamera, OrbitTurnsAroundTheTargetAndFitFillsTheTighterDirection) {
    Camera camera;
    camera.setScene({0, 0, 0}, 10);
    camera.eye = {0, -30, 0};
    camera.up = {0, 0, 1};
    camera.orbit(0.7, -0.3);
    EXPECT_NEAR(camera.distance(), 30, 1e-9);
    EXPECT_NEAR(dot(camera.axes().up, camera.axes().toward), 0, 1e-12);

    // A box twice as wide as high in a square picture: its width fills the room.
    camera.orient(axesOfPreset(Matrix()));
    const std::vector<Vec3> corners = {{-4, -1, 0}, {8, 5, 2}, {8, -1, 2}, {-4, 5, 0}};
    camera.fit(corners, 100, 100, 5);
    double low = 1;
    double high = -1;
    for (const Vec3& corner : corners) {
        const auto p = ndc(camera, corner, 1);
        low = std::min(low, p[0]);
        high = std::max(high, p[0]);
        EXPECT_LE(std::fabs(p[1]), 0.9 + 1e-9);
    }
    EXPECT_NEAR(low, -0.9, 1e-9);
    EXPECT_NEAR(high, 0.9, 1e-9);
}

TEST(ViewerCamera, PresetsAreReadAsRowsOfRightUpAndTowardTheViewer) {
    const veksg::SCView views;
    // Key 1 is the front view: +X to the right, +Z up, looking along +Y.
    const ViewAxes front = axesOfPreset(matrixOf(views.orientations.getValue(1)));
    EXPECT_EQ(front.right, (Vec3{1, 0, 0}));
    EXPECT_EQ(front.up, (Vec3{0, 0, 1}));
    EXPECT_EQ(front.toward, (Vec3{0, -1, 0}));
}

class ViewerModel : public testing::Test {
protected:
    ViewerModel() : sample(vekhost::loadSample({})), doc(*sample.document), selection(doc) {}

    // The runs of the batch entries for a mesh, lit or not.
    std::vector<int> runsOf(int mesh, bool lit) const {
        const veksg::MeshRT& batch = doc.runtime->meshes;
        for (int entry = 0; entry < batch.instances.size(); ++entry)
            if (batch.instances.getValue(entry).second == mesh &&
                (batch.flags.getValue(entry) != 0) == lit)
                return batch.lists.getValue(entry);
        return {};
    }

    void fill() { fillBatches(doc, vekhost::Visibility(doc), selection.highlight()); }

    vekhost::LoadResult sample;
    vekhost::Document& doc;
    Selection selection;
};

TEST_F(ViewerModel, ASelectedNodeLightsItsSubtreeAndAFaceItsBoundingEdges) {
    selection.select(nodeKeys, 0);
    const Highlight all = selection.highlight();
    EXPECT_EQ(std::count(all.faces.begin(), all.faces.end(), true), doc.topo->faces.size());
    EXPECT_EQ(std::count(all.edges.begin(), all.edges.end(), true), doc.topo->edges.size());

    const int face = doc.topo->nodeLists4.getValue(2).front();
    selection.select(faceKeys, face);
    EXPECT_EQ(selection.focusNode(), 2);
    const Highlight one = selection.highlight();
    EXPECT_EQ(std::count(one.faces.begin(), one.faces.end(), true), 1);
    std::vector<int> edges;
    for (int edge = 0; edge < static_cast<int>(one.edges.size()); ++edge)
        if (one.edge(edge)) edges.push_back(edge);
    EXPECT_EQ(edges, doc.topo->faceLists2.getValue(face));
    // Added again it leaves the selection.
    selection.select(faceKeys, face, true);
    EXPECT_TRUE(selection.empty());
}

TEST_F(ViewerModel, AnAnnotationSelectsItselfWithTheFacesAndEdgesItAppliesTo) {
    veksg::SCPmi& pmi = *doc.pmi;
    const auto& faces = doc.topo->nodeLists4.getValue(1);
    const int annotation = pmi.pmis.insert(std::make_shared<veksg::Measure>());
    for (veksg::Hierarchy* relation : {&pmi.relation4, &pmi.relation6, &pmi.relation11})
        relation->resizeToFitKey(annotation, {});
    // Both sides of the dimension touch faces[1]: it stays selected.
    pmi.relation4.setValue(annotation, {faces[0], faces[1]});
    pmi.relation6.setValue(annotation, {faces[1], faces[2]});
    pmi.relation11.setValue(annotation, {0});
    selection.selectAnnotation(annotation);
    EXPECT_EQ(selection.keys(annotationKeys), std::vector<int>{annotation});
    EXPECT_EQ(selection.keys(faceKeys), (std::vector<int>{faces[0], faces[1], faces[2]}));
    EXPECT_EQ(selection.keys(edgeKeys), std::vector<int>{0});
    EXPECT_EQ(selection.focusNode(), 1);
    // A key without an annotation clears the selection.
    selection.selectAnnotation(annotation + 1);
    EXPECT_TRUE(selection.empty());
}

TEST_F(ViewerModel, BatchesHoldWhatShowsInRunsAndTheHighlightApart) {
    const int mesh = doc.topo->nodeLists9.getValue(1).front();
    const int total = vekhost::vertexCount(*doc.scene->meshes.getValue(mesh));
    fill();
    EXPECT_EQ(runsOf(mesh, false), (std::vector<int>{0, total}));

    // A face hidden and another lit: three runs around the hole, the lit one apart.
    const auto& faces = doc.topo->nodeLists4.getValue(1);
    const veksg::PrimitiveInfo hidden = doc.resources->primitivesA.getValue(faces[3]);
    const veksg::PrimitiveInfo lit = doc.resources->primitivesA.getValue(faces[6]);
    doc.runtime->visibility.sets[2][static_cast<std::size_t>(faces[3])] = false;
    selection.select(faceKeys, faces[6]);
    fill();
    EXPECT_EQ(runsOf(mesh, false),
              (std::vector<int>{0, hidden.first, hidden.first + hidden.count,
                                lit.first - hidden.first - hidden.count, lit.first + lit.count,
                                total - lit.first - lit.count}));
    EXPECT_EQ(runsOf(mesh, true), (std::vector<int>{lit.first, lit.count}));

    // A hidden node draws nothing, edges included.
    doc.runtime->visibility.sets[0][1] = false;
    fill();
    EXPECT_TRUE(runsOf(mesh, false).empty());
    for (int entry = 0; entry < doc.runtime->polylines.instances.size(); ++entry)
        EXPECT_NE(doc.runtime->polylines.refs1.getValue(entry), 1);
}

TEST_F(ViewerModel, SavedViewsAndSectionsAreStatesAppliedByTheirExecutors) {
    Camera camera;
    SectionPlane plane;
    {
        ViewStates states(doc, camera, plane);
        camera.eye = {10.3, -20.1, 5};
        camera.up = {0, 0, 1};
        states.saveView(L"one");
        camera.eye = {1, 1, 1};
        const int key = states.saveView(L"one");
        EXPECT_EQ(doc.pmi->views.size(), 1);
        EXPECT_EQ(doc.states->typeStates->containers[key].states.size(), 1u);
        camera.eye = {7, 7, 7};
        camera.orthographic = false;
        ASSERT_TRUE(states.restoreView(L"one"));
        EXPECT_EQ(camera.eye, (Vec3{1, 1, 1}));
        EXPECT_TRUE(camera.orthographic);
        EXPECT_EQ(doc.pmi->views.getValue(key)->name(), std::wstring(L"one"));
        EXPECT_FALSE(states.restoreView(L"two"));

        SectionPlane cut;
        cut.active = true;
        cut.normal = {0, 0, 2};
        cut.offset = -3;
        states.setSection(cut);
        EXPECT_TRUE(plane.active);
        EXPECT_EQ(plane.normal, (Vec3{0, 0, 1}));
        EXPECT_NEAR(plane.offset, -3, 1e-6);
        const auto& last = doc.states->firstStates->states.back();
        EXPECT_EQ(dynamic_cast<veksg::SectionState&>(*last).sections.size(), 1u);
        // A view saved with the cut brings it back; one saved without takes it away.
        const int cutView = states.saveView(L"cut");
        EXPECT_EQ(doc.states->typeStates->containers[cutView].states.size(), 2u);
        states.setSection(SectionPlane());
        EXPECT_FALSE(plane.active);
        ASSERT_TRUE(states.restoreView(cutView));
        EXPECT_TRUE(plane.active);
        EXPECT_NEAR(plane.offset, -3, 1e-6);
        ASSERT_TRUE(states.restoreView(key));
        EXPECT_FALSE(plane.active);
        // Every state applied, in order: two saves, a restore and its cut off, a section, a
        // save, the section off, a restore with its cut, a restore and its cut off.
        EXPECT_EQ(doc.states->firstStates->states.size(), 11u);
    }
    // Gone with the object that registered them.
    EXPECT_FALSE(doc.states->getExecutor(cameraCommand));
}

TEST_F(ViewerModel, MeasuresUseTheExactGeometryAndLiveInTemporaryGraphics) {
    Measurement measure(doc, sample.shapes);
    // The bolt's flange is a cylinder of radius 8.5 around Z.
    Pick rim;
    for (const int edge : doc.topo->nodeLists5.getValue(1)) {
        const veksg::Edge& record = doc.topo->edges.getValue(edge);
        if (record.kind == GeomAbs_Circle && std::hypot(record.pointA[0], record.pointA[1]) > 8.4f)
            rim.edge = edge;
    }
    ASSERT_GE(rim.edge, 0);
    measure.setMode(MeasureMode::Radius);
    const auto radius = measure.add(rim);
    ASSERT_TRUE(radius && radius->ok) << (radius ? radius->text : "");
    EXPECT_NEAR(radius->value, 8.5, 1e-9);

    // The head's top and any of its sides are perpendicular; two sides are not planar pairs
    // with the shank.
    Pick top;
    Pick side;
    Pick shank;
    top.hit = side.hit = shank.hit = true;
    for (const int face : doc.topo->nodeLists4.getValue(1)) {
        const veksg::Face& f = doc.topo->faces.getValue(face);
        const int kind = doc.topo->refs14b.getValue(doc.topo->faceRefs1.getValue(face));
        if (f.pointA[2] > 6.79f) top.face = face;
        if (kind == 0 && f.pointA[2] > 1.49f && f.pointB[2] - f.pointA[2] > 5) side.face = face;
        if (kind == 1 && f.pointA[2] < -29) shank.face = face;
    }
    measure.setMode(MeasureMode::Angle);
    EXPECT_FALSE(measure.add(top));
    const auto angle = measure.add(side);
    ASSERT_TRUE(angle && angle->ok) << (angle ? angle->text : "");
    EXPECT_NEAR(angle->value, 90, 1e-9);
    measure.add(top);
    EXPECT_FALSE(measure.add(shank)->ok);

    const veksg::SCTempGraphics& temp = *doc.tempGraphics;
    EXPECT_EQ(temp.measures.size(), 2);
    EXPECT_EQ(temp.tempValues.size(), 5);
    EXPECT_EQ(temp.measures.getValue(0)->measureText, L"R 8.5");
    EXPECT_EQ(temp.texts3d.getValue(0)->text, L"R 8.5");
    measure.clear();
    EXPECT_EQ(temp.measures.size() + temp.tempValues.size() + temp.texts3d.size(), 0);
}

} // namespace
} // namespace vekview::test
