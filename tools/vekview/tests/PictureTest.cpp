// The viewer's pictures against the software renderer's and against themselves: presets,
// hiding, picking with its highlight, saved views, the section. They run vekview on scripts,
// as a user without a display would.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "Loader.h"
#include "Render.h"
#include "TestFiles.h"
#include "ViewerTests.h"

namespace vekview::test {
namespace {

bool same(const vekload::Image& a, const vekload::Image& b) {
    return a.width == b.width && a.height == b.height && a.rgba == b.rgba;
}

TEST(ViewerPictures, EveryPresetAgreesWithTheSoftwarePicture) {
    SKIP_WITHOUT_DISPLAY();
    const std::string engine =
        vekhost::test::assimpFile("glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb");
    for (const std::string& file : {std::string(), engine}) {
        if (!file.empty() && !vekhost::test::exists(file)) continue;
        std::vector<std::string> lines = {"size 200 150"};
        for (int view = 0; view < 7; ++view) {
            lines.push_back("view " + std::to_string(view));
            lines.push_back("screenshot " + scratch("viewer" + std::to_string(view) + ".png"));
        }
        ASSERT_EQ(
            runScript(lines, file.empty() ? std::vector<std::string>{} : std::vector{file}).status,
            0);
        for (int view = 0; view < 7; ++view) {
            const std::string reference = scratch("software" + std::to_string(view) + ".png");
            ASSERT_EQ(runVekload(file, view, 200, 150, reference).status, 0);
            const Mask viewer = covered(picture(scratch("viewer" + std::to_string(view) + ".png")));
            EXPECT_GE(iou(viewer, covered(picture(reference))), 0.9) << file << ", view " << view;
            EXPECT_GT(count(viewer), 1000) << file << ", view " << view;
        }
    }
}

TEST(ViewerPictures, HidingANodeTakesAwayItsPixelsAndNoOthers) {
    SKIP_WITHOUT_DISPLAY();
    const Outcome run = runScript(
        {"size 240 200", "view 0", "screenshot " + scratch("all.png"), "hide washer",
         "screenshot " + scratch("hidden.png"), "show 2", "screenshot " + scratch("shown.png"),
         "hide bolt", "hide nut", "hide lock nut", "screenshot " + scratch("washer.png"),
         "hide flanged bolt assembly", "show bolt", "screenshot " + scratch("none.png")});
    ASSERT_EQ(run.status, 0) << run.err;
    const auto all = picture(scratch("all.png"));
    const auto washer = picture(scratch("washer.png"));
    const Mask gone = changed(all, picture(scratch("hidden.png")));
    const Mask alone = covered(washer);
    int outside = 0;
    int kept = 0;
    for (std::size_t i = 0; i < gone.size(); ++i) {
        outside += gone[i] && !alone[i] ? 1 : 0;
        // Where the picture showed the washer as it looks alone, the washer was in front.
        const bool washerShown =
            alone[i] && std::equal(&all.rgba[4 * i], &all.rgba[4 * i + 4], &washer.rgba[4 * i]);
        kept += washerShown && !gone[i] ? 1 : 0;
    }
    EXPECT_GT(count(gone), 500);
    EXPECT_LE(outside, count(gone) / 100);
    EXPECT_LE(kept, count(gone) / 100);
    EXPECT_TRUE(same(all, picture(scratch("shown.png"))));
    // A node shows only when every node above it does.
    EXPECT_EQ(count(covered(picture(scratch("none.png")))), 0);
}

// The top of the sample's bolt head: a planar face at Z = 6.8 around the Z axis, which the
// top view shows whole in the middle of the picture.
int headTop(const vekhost::Document& doc) {
    for (const int face : doc.topo->nodeLists4.getValue(1)) {
        const veksg::Face& record = doc.topo->faces.getValue(face);
        if (std::fabs(record.pointA[2] - 6.8f) < 1e-4f &&
            std::fabs(record.pointB[2] - 6.8f) < 1e-4f)
            return face;
    }
    return -1;
}

TEST(ViewerPictures, APickAtAFaceReportsItAndLightsUpThatFaceAlone) {
    SKIP_WITHOUT_DISPLAY();
    const vekhost::LoadResult sample = vekhost::loadSample({});
    vekhost::Document& doc = *sample.document;
    const int face = headTop(doc);
    ASSERT_GE(face, 0);
    // The front view shows the flange near the top and the lock nut near the bottom.
    const Outcome run =
        runScript({"size 240 200", "view 2", "screenshot " + scratch("before.png"), "pick 120 100",
                   "screenshot " + scratch("after.png"), "pick 3 3", "view 1", "pick 155 36"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.substr(0, run.out.rfind("pick 155")),
              "pick 120 100: face " + std::to_string(face) + " node 1\npick 3 3: nothing\n");
    EXPECT_EQ(run.out.substr(run.out.size() - 7), "node 1\n");

    // The face alone, by the software renderer: every other face and every edge hidden.
    auto& bits = doc.runtime->visibility.sets;
    std::fill(bits[2].begin(), bits[2].end(), false);
    std::fill(bits[3].begin(), bits[3].end(), false);
    bits[2][static_cast<std::size_t>(face)] = true;
    vekload::RenderOptions options;
    options.width = 240;
    options.height = 200;
    options.view = 2;
    const auto before = picture(scratch("before.png"));
    const auto after = picture(scratch("after.png"));
    const Mask lit = changed(before, after);
    EXPECT_GE(iou(lit, covered(vekload::render(doc, options))), 0.9);
    // What changed took the highlight's orange.
    for (std::size_t i = 0; i < lit.size(); ++i)
        if (lit[i]) {
            ASSERT_GT(after.rgba[4 * i], after.rgba[4 * i + 2] + 100) << "pixel " << i;
        }
}

TEST(ViewerPictures, AMeasureBetweenTwoPickedPointsIsTheirDistanceInSpace) {
    SKIP_WITHOUT_DISPLAY();
    const vekhost::LoadResult sample = vekhost::loadSample({});
    // The top view shows X and Y at the scale that fits the assembly's box into the margin.
    const veksg::BBox& box = sample.document->scene->boxes.getValue(0);
    const int margin = std::max(1, 200 / 32);
    const double scale = std::min((240.0 - 2 * margin) / (box.max[0] - box.min[0]),
                                  (200.0 - 2 * margin) / (box.max[1] - box.min[1]));
    // From the middle of the head's top (Z = 6.8) to the flange's top (Z = 1.5) 88 pixels
    // to the right.
    const Outcome run = runScript({"size 240 200", "view 2", "measure 120 100 208 100"});
    ASSERT_EQ(run.status, 0) << run.err;
    const double reported = std::stod(run.out.substr(run.out.find(": ") + 2));
    EXPECT_NEAR(reported, std::hypot(88.0 / scale, 6.8 - 1.5), 1e-3);
}

TEST(ViewerPictures, ARestoredViewLooksAsItDidWhenSaved) {
    SKIP_WITHOUT_DISPLAY();
    const Outcome run =
        runScript({"size 200 150", "projection perspective", "view 0", "orbit 20 -10",
                   "save-view three quarter", "screenshot " + scratch("saved.png"), "orbit 40 25",
                   "projection orthographic", "screenshot " + scratch("moved.png"),
                   "restore-view three quarter", "screenshot " + scratch("restored.png")});
    ASSERT_EQ(run.status, 0) << run.err;
    const auto saved = picture(scratch("saved.png"));
    EXPECT_FALSE(same(saved, picture(scratch("moved.png"))));
    EXPECT_TRUE(same(saved, picture(scratch("restored.png"))));
}

TEST(ViewerPictures, ASectionTakesAwayOneSideAndCapsTheCut) {
    SKIP_WITHOUT_DISPLAY();
    // The front view looks along +Y with +X to the right; the model is centred on X = 0.
    const Outcome run = runScript({"size 240 200", "view 1", "screenshot " + scratch("whole.png"),
                                   "section 1 0 0 0", "screenshot " + scratch("cut.png"),
                                   "section 0 -1 0 0", "screenshot " + scratch("capped.png")});
    ASSERT_EQ(run.status, 0) << run.err;
    const auto whole = picture(scratch("whole.png"));
    const auto cut = picture(scratch("cut.png"));
    int right = 0;
    int leftChanged = 0;
    int leftCovered = 0;
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 240; ++x) {
            if (x >= 122) right += cut.covered(x, y) ? 1 : 0;
            if (x > 117) continue;
            leftCovered += whole.covered(x, y) ? 1 : 0;
            leftChanged +=
                std::equal(whole.pixel(x, y), whole.pixel(x, y) + 4, cut.pixel(x, y)) ? 0 : 1;
        }
    }
    EXPECT_EQ(right, 0);
    EXPECT_GT(leftCovered, 1000);
    EXPECT_EQ(leftChanged, 0);

    // Cut towards the viewer, the solids read as solid: the outline stays and most of it is
    // the cap's one flat colour.
    const auto capped = picture(scratch("capped.png"));
    EXPECT_GE(iou(covered(capped), covered(whole)), 0.95);
    std::map<std::array<std::uint8_t, 3>, int> colours;
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 240; ++x)
            if (capped.covered(x, y))
                ++colours[{capped.pixel(x, y)[0], capped.pixel(x, y)[1], capped.pixel(x, y)[2]}];
    int flat = 0;
    for (const auto& entry : colours)
        flat = std::max(flat, entry.second);
    EXPECT_GT(flat, count(covered(capped)) / 2);
}

} // namespace
} // namespace vekview::test
