// PMI from an AP242 file that Open CASCADE wrote: read into the data model, reported,
// checked, and its saved views.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

#include "Check.h"
#include "Loader.h"
#include "Options.h"
#include "PmiDraw.h"
#include "PmiFile.h"
#include "PmiReader.h"
#include "PmiReport.h"
#include "SavedViews.h"
#include "TestFiles.h"
#include "veksg/States.h"

namespace vekload::test {
namespace {

const std::string& pmiPart() {
    static const std::string path = [] {
        std::string file = vekhost::test::scratchDirectory() + "/pmi-part.step";
        vekhost::test::writePmiPart(file);
        return file;
    }();
    return path;
}

vekhost::LoadResult loadPart() {
    return vekhost::loadFile(pmiPart(), vekhost::LoadOptions());
}

// The face whose box is flat at `value` on `axis`; -1 for none.
int flatFace(const vekhost::Document& document, int axis, float value) {
    const auto& faces = document.topo->faces;
    for (int key = 0; key < faces.size(); ++key) {
        const veksg::Face& face = faces.getValue(key);
        if (std::abs(face.pointA[axis] - value) < 1e-3f &&
            std::abs(face.pointB[axis] - value) < 1e-3f)
            return key;
    }
    return -1;
}

// The face of the hole: the one whose box lies inside the block on x.
int boreFace(const vekhost::Document& document) {
    const auto& faces = document.topo->faces;
    for (int key = 0; key < faces.size(); ++key)
        if (faces.getValue(key).pointA[0] > 10 && faces.getValue(key).pointB[0] < 30) return key;
    return -1;
}

float distance(const veksg::Point3& a, const veksg::Point3& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

TEST(Pmi, EveryAnnotationArrivesWithItsValueTolerancesTextAndFaces) {
    const vekhost::LoadResult result = loadPart();
    const vekhost::Document& document = *result.document;
    const veksg::SCPmi& pmi = *document.pmi;
    const std::string left = std::to_string(flatFace(document, 0, 0));
    const std::string right = std::to_string(flatFace(document, 0, 40));

    const std::vector<ReportSection> sections = pmiSections(document);
    ASSERT_EQ(sections.size(), 1U);
    ASSERT_EQ(pmi.pmis.size(), 6);
    const std::string& json = sections[0].json;
    // Each annotation's object up to its faces, and the faces.
    const std::pair<const char*, std::string> expected[] = {
        {"{\"kind\": \"distance\", \"text\": \"40 \u00b10.1\", \"value\": 40, \"upper\": "
         "0.1, \"lower\": -0.1, \"datums\": [], \"faces\": [",
         left + ", " + right},
        {"{\"kind\": \"diameter\", \"text\": \"\u230012 +0.05/0\", \"value\": 12, \"upper\": "
         "0.05, \"lower\": 0, \"datums\": [], \"faces\": [",
         std::to_string(boreFace(document))},
        {"{\"kind\": \"presentation\", \"text\": \"note\", \"value\": null, \"upper\": null, "
         "\"lower\": null, \"datums\": [], \"faces\": [",
         std::to_string(flatFace(document, 2, 10))},
        {"{\"kind\": \"flatness\", \"text\": \"\u23e5 0.05\", \"value\": 0.05, \"upper\": "
         "0.05, \"lower\": 0, \"datums\": [], \"faces\": [",
         std::to_string(flatFace(document, 2, 10))},
        {"{\"kind\": \"perpendicularity\", \"text\": \"\u22a5 0.02 A\", \"value\": 0.02, "
         "\"upper\": 0.02, \"lower\": 0, \"datums\": [\"A\"], \"faces\": [",
         right},
        {"{\"kind\": \"datum\", \"text\": \"A\", \"value\": null, \"upper\": null, \"lower\": "
         "null, \"datums\": [\"A\"], \"faces\": [",
         std::to_string(flatFace(document, 2, 0))}};
    for (const auto& [head, faces] : expected) {
        std::string annotation = head;
        annotation.append(faces).append("]}");
        EXPECT_NE(json.find(annotation), std::string::npos) << annotation << "\nin " << json;
    }

    // The records behind the report: classes, measured points, the datum link, the owner.
    int datum = -1;
    int perpendicularity = -1;
    for (int key = 0; key < pmi.pmis.size(); ++key) {
        auto& annotation = *pmi.pmis.getValue(key);
        const std::wstring name = annotation.name();
        if (name == L"Datum A") datum = key;
        if (name.rfind(L'\u22a5', 0) == 0) perpendicularity = key;
        if (auto* measure = dynamic_cast<veksg::Measure*>(&annotation)) {
            EXPECT_NEAR(distance(measure->point1, measure->point2), measure->value, 1e-3f);
            ASSERT_TRUE(measure->leader);
            EXPECT_EQ(measure->leader->points.size(), 4U);
        } else if (dynamic_cast<veksg::TessPMI*>(&annotation)) {
            // Its box takes in the graphics, which stand above the part.
            EXPECT_GE(pmi.pmiBoxes.getValue(key).max[2], 12.0f);
        } else {
            ASSERT_EQ(annotation.type(), veksg::PMI::TEXT3D_LEADER);
            const auto& leader = dynamic_cast<veksg::Text3DLeader&>(annotation);
            ASSERT_TRUE(leader.leader);
            // Where the file put it, else off the part: outside the block's box.
            const veksg::Point3& at = leader.text3d->position;
            if (name.rfind(L'\u23e5', 0) == 0) {
                EXPECT_EQ(at, veksg::Point3(30, 15, 25));
            }
            EXPECT_TRUE(at[0] < 0 || at[0] > 40 || at[1] < 0 || at[1] > 20 || at[2] < 0 ||
                        at[2] > 10)
                << key;
        }
        EXPECT_EQ(pmi.map2.getValue(key), 0);
        EXPECT_TRUE(pmi.relation11.getValue(key).empty()) << "faces, so no edges";
        EXPECT_TRUE(pmi.pmiBoxes.getValue(key).valid);
    }
    ASSERT_GE(datum, 0);
    ASSERT_GE(perpendicularity, 0);
    EXPECT_EQ(pmi.relation12.getValue(perpendicularity), std::vector<int>{datum});
    EXPECT_EQ(pmi.relation1.getValue(0).size(), 6U);
}

TEST(Pmi, CheckCoversEveryRelationKey) {
    vekhost::LoadResult result = loadPart();
    veksg::SCPmi& pmi = *result.document->pmi;
    EXPECT_TRUE(vekhost::checkDocument(*result.document).ok());

    const auto broken = [&](const char* what, const std::function<void()>& change) {
        veksg::SCPmi saved = pmi;
        change();
        const vekhost::CheckResult check = vekhost::checkDocument(*result.document);
        EXPECT_FALSE(check.ok()) << what;
        pmi = saved;
    };
    broken("a face", [&] { pmi.relation4.addChild(0, 9999); });
    broken("a second face", [&] { pmi.relation6.addChild(1, -1); });
    broken("a datum", [&] { pmi.relation12.addChild(2, 6); });
    broken("an owner", [&] { pmi.map2.setValue(3, 7); });
    broken("an annotation of a node", [&] { pmi.relation1.addChild(0, 6); });
    broken("a node that does not list its annotation", [&] { pmi.relation1.setValue(0, {}); });
    broken("an attribute", [&] { pmi.relation5.addChild(4, 999); });
    broken("a box", [&] { pmi.pmiBoxes.insert(6, {}, {}); });
}

// The part read again after a saved view was added to its document (the writer leaves
// views out of the file).
vekhost::LoadResult loadWithSavedView() {
    vekhost::LoadResult result = loadPart();
    vekhost::Document& document = *result.document;
    vekhost::test::addSavedView(result.shapes->document());
    document.pmi->cleanup();
    const vekhost::PmiKeys keys = vekhost::readPmi(*result.shapes, document);
    vekhost::readSavedViews(*result.shapes, keys, document);
    document.resizeAll();
    return result;
}

TEST(Pmi, SavedViewsBecomeViewsWithCameraAndSectionStates) {
    const vekhost::LoadResult result = loadWithSavedView();
    vekhost::Document& document = *result.document;
    const veksg::SCPmi& pmi = *document.pmi;

    ASSERT_EQ(pmi.views.size(), 1);
    const veksg::View& view = *pmi.views.getValue(0);
    EXPECT_EQ(std::wstring(view.name()), L"Top");
    EXPECT_EQ(view.position, veksg::Point3(20, 10, 100));
    EXPECT_EQ(view.target, veksg::Point3(20, 10, 5));
    EXPECT_EQ(view.up, veksg::Point3(0, 1, 0));
    // The two tolerances, the part's node, the one cut.
    ASSERT_EQ(pmi.relation9.getValue(0).size(), 2U);
    for (const int annotation : pmi.relation9.getValue(0)) {
        EXPECT_EQ(pmi.pmis.getValue(annotation)->type(), veksg::PMI::TEXT3D_LEADER);
        EXPECT_EQ(pmi.relation13.getValue(annotation), std::vector<int>{0});
    }
    EXPECT_EQ(pmi.relation8.getValue(0), std::vector<int>{0});
    EXPECT_EQ(pmi.relation2.getValue(0), std::vector<int>{0});
    ASSERT_EQ(pmi.relation10.getValue(0), std::vector<int>{0});
    const veksg::Section& cut = *pmi.sections.getValue(0);
    EXPECT_EQ(cut.origin, veksg::Point3(0, 0, 5));
    EXPECT_EQ(cut.normal, veksg::Point3(0, 0, 1));
    EXPECT_EQ(std::wstring(cut.name()), L"middle");

    const auto& states = document.states->typeStates->containers.at(0).states;
    ASSERT_EQ(states.size(), 2U);
    const auto* camera = dynamic_cast<const veksg::CameraState*>(states[0].get());
    ASSERT_NE(camera, nullptr);
    EXPECT_EQ(camera->getCmdId(), vekhost::viewCameraCommand);
    EXPECT_EQ(camera->target, view.target);
    const auto* section = dynamic_cast<const veksg::SectionState*>(states[1].get());
    ASSERT_NE(section, nullptr);
    EXPECT_EQ(section->getCmdId(), vekhost::viewSectionCommand);
    ASSERT_EQ(section->sections.size(), 1U);
    EXPECT_EQ(section->sections[0], pmi.sections.getValue(0));

    EXPECT_TRUE(vekhost::checkDocument(document).ok());
    // Views and what they show name each other.
    const std::vector<int> listed = pmi.relation9.getValue(0);
    document.pmi->relation9.setValue(0, {listed[0]});
    EXPECT_FALSE(vekhost::checkDocument(document).ok());
    document.pmi->relation9.setValue(0, listed);
    const std::vector<ReportSection> sections = pmiSections(document);
    ASSERT_EQ(sections.size(), 2U);
    EXPECT_EQ(sections[1].json, "[{\"name\": \"Top\", \"position\": [20, 10, 100], \"target\": "
                                "[20, 10, 5], \"up\": [0, 1, 0], \"pmi\": [" +
                                    std::to_string(pmi.relation9.getValue(0)[0]) + ", " +
                                    std::to_string(pmi.relation9.getValue(0)[1]) +
                                    "], \"nodes\": [0], \"sections\": [0]}]");
}

// Annotation ink within a few pixels of `at`.
bool inkNear(const Image& image, const std::array<double, 3>& at) {
    for (int y = static_cast<int>(at[1]) - 4; y <= static_cast<int>(at[1]) + 4; ++y)
        for (int x = static_cast<int>(at[0]) - 4; x <= static_cast<int>(at[0]) + 4; ++x) {
            if (x < 0 || y < 0 || x >= image.width || y >= image.height) continue;
            const std::uint8_t* p = image.pixel(x, y);
            if (p[2] > p[0] + 60 && p[2] > p[1] + 40) return true;
        }
    return false;
}

// Draws with `options` and says, for each annotation with a text, whether it shows.
std::map<int, bool> textsShown(const vekhost::Document& document, RenderOptions options) {
    std::map<int, bool> shown;
    const auto draw = options.overlay;
    options.overlay = [&](Image& image, const auto& project) {
        if (draw) draw(image, project);
        for (int key = 0; key < document.pmi->pmis.size(); ++key) {
            veksg::PMI* annotation = document.pmi->pmis.getValue(key).get();
            veksg::Point3 at;
            if (auto* measure = dynamic_cast<veksg::Measure*>(annotation))
                at = measure->point3;
            else if (auto* leader = dynamic_cast<veksg::Text3DLeader*>(annotation))
                at = leader->text3d->position;
            else
                continue;
            shown[key] = inkNear(image, project({at[0], at[1], at[2]}));
        }
    };
    render(document, options);
    return shown;
}

TEST(Pmi, PicturesDrawEveryAnnotationOrThoseOfOneSavedView) {
    const vekhost::LoadResult result = loadWithSavedView();
    const vekhost::Document& document = *result.document;
    const veksg::SCPmi& pmi = *document.pmi;
    RenderOptions options;
    options.width = 320;
    options.height = 240;
    options.view = 1;
    const std::map<int, bool> none = textsShown(document, options);
    ASSERT_EQ(none.size(), 5U);
    for (const auto& [key, shown] : none)
        EXPECT_FALSE(shown) << key;
    RenderOptions all = options;
    addPmi(all, document, "");
    for (const auto& [key, shown] : textsShown(document, all))
        EXPECT_TRUE(shown) << key;

    RenderOptions top = options;
    addPmi(top, document, "Top");
    EXPECT_EQ(top.orientation,
              std::vector<float>(document.views->orientations.getValue(2).data(),
                                 document.views->orientations.getValue(2).data() + 16));
    for (const auto& [key, shown] : textsShown(document, top)) {
        const auto& listed = pmi.relation9.getValue(0);
        const bool inView = std::find(listed.begin(), listed.end(), key) != listed.end();
        // The length's text lies clear of everything the view shows.
        if (inView || pmi.pmis.getValue(key)->name() == std::wstring(L"40 \u00b10.1")) {
            EXPECT_EQ(shown, inView) << key;
        }
    }
    EXPECT_THROW(addPmi(options, document, "Side"), std::invalid_argument);

    // The view's cut at half height keeps the upper half: from the front, half as tall.
    const auto rows = [&](const RenderOptions& picture) {
        const Image image = render(document, picture);
        int covered = 0;
        for (int y = 0; y < image.height; ++y)
            covered += image.covered(image.width / 8, y) ? 1 : 0;
        return covered;
    };
    RenderOptions cut = options;
    cut.cuts = top.cuts;
    ASSERT_EQ(cut.cuts.size(), 1U);
    EXPECT_NEAR(rows(cut), rows(options) / 2.0, 2);
}

TEST(Pmi, ASavedViewIsChosenForAPictureOnly) {
    const char* picture[] = {"vekload", "--png", "a.png", "--pmi-view", "Top", "a.step"};
    EXPECT_EQ(parseOptions(6, picture).pmiView, "Top");
    const char* alone[] = {"vekload", "--pmi-view", "Top", "a.step"};
    EXPECT_THROW(parseOptions(4, alone), std::invalid_argument);
    const char* unnamed[] = {"vekload", "--png", "a.png", "--pmi-view"};
    EXPECT_THROW(parseOptions(4, unnamed), std::invalid_argument);
}

} // namespace
} // namespace vekload::test
