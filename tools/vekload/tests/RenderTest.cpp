// Pictures drawn from the filled components alone: how they fill the frame, which way each
// preset turns a model, and what the visibility bits leave out.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Builder.h"
#include "Loader.h"
#include "Png.h"
#include "Render.h"
#include "TestFiles.h"

namespace vekload::test {
using namespace vekhost;
using namespace vekhost::test;
namespace {

struct Coverage {
    long pixels = 0;
    long grey = 0; // covered pixels in the given plain grey
    // Inclusive pixel bounds; right < left when nothing is covered.
    int left = INT_MAX;
    int top = INT_MAX;
    int right = -1;
    int bottom = -1;
};

Coverage coverageOf(const Image& image, int grey = -1) {
    Coverage c;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            if (!image.covered(x, y)) continue;
            ++c.pixels;
            const std::uint8_t* p = image.pixel(x, y);
            c.grey += p[0] == grey && p[1] == grey && p[2] == grey ? 1 : 0;
            c.left = std::min(c.left, x);
            c.right = std::max(c.right, x);
            c.top = std::min(c.top, y);
            c.bottom = std::max(c.bottom, y);
        }
    return c;
}

Image draw(const Document& doc, int view, int width = 160, int height = 120) {
    RenderOptions options;
    options.view = view;
    options.width = width;
    options.height = height;
    return render(doc, options);
}

enum class Hue { None, Red, Green, Blue, Yellow, Cyan, Grey };

Hue hueAt(const Image& image, int x, int y) {
    if (!image.covered(x, y)) return Hue::None;
    const std::uint8_t* p = image.pixel(x, y);
    auto over = [](int a, int other) { return a > 2 * other + 20; };
    if (over(p[0], p[1]) && over(p[0], p[2])) return Hue::Red;
    if (over(p[1], p[0]) && over(p[1], p[2])) return Hue::Green;
    if (over(p[2], p[0]) && over(p[2], p[1])) return Hue::Blue;
    if (over(p[0], p[2]) && over(p[1], p[2])) return Hue::Yellow;
    if (over(p[1], p[0]) && over(p[2], p[0])) return Hue::Cyan;
    return Hue::Grey;
}

// How many pixels have the hue, and their mean place across and up from the centre.
struct Spot {
    long pixels = 0;
    double at[2] = {0, 0};
};

Spot spotOf(const Image& image, Hue hue) {
    Spot s;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            if (hueAt(image, x, y) == hue) {
                ++s.pixels;
                s.at[0] += x + 0.5 - image.width / 2.0;
                s.at[1] += image.height / 2.0 - (y + 0.5);
            }
    for (double& mean : s.at)
        mean /= s.pixels > 0 ? static_cast<double>(s.pixels) : 1.0;
    return s;
}

enum class Layout { VN, VNC, VNT };

// An axis-aligned box as twelve triangles in one layout; VNC vertices are yellow.
std::shared_ptr<PartGeometry> boxPart(const Vec3& low, const Vec3& high, Layout layout) {
    auto part = std::make_shared<PartGeometry>();
    part->mesh = std::make_shared<veksg::Mesh>();
    veksg::Mesh& mesh = *part->mesh;
    for (std::size_t axis = 0; axis < 3; ++axis)
        for (const float side : {-1.0f, 1.0f})
            for (const auto& [a, b] : {std::pair{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 1}, {0, 1}}) {
                const std::size_t u = (axis + 1) % 3;
                const std::size_t v = (axis + 2) % 3;
                float point[3];
                point[axis] = static_cast<float>(side > 0 ? high[axis] : low[axis]);
                point[u] = static_cast<float>(a ? high[u] : low[u]);
                point[v] = static_cast<float>(b ? high[v] : low[v]);
                float normal[3] = {0, 0, 0};
                normal[axis] = side;
                auto put = [&](auto& out) {
                    std::copy(point, point + 3, out.vertex);
                    std::copy(normal, normal + 3, out.normal);
                };
                if (layout == Layout::VN) put(mesh.vn.emplace_back());
                if (layout == Layout::VNT) put(mesh.vnt.emplace_back());
                if (layout != Layout::VNC) continue;
                const float yellow[4] = {1, 1, 0, 1};
                put(mesh.vnc.emplace_back());
                std::copy(yellow, yellow + 4, mesh.vnc.back().color);
            }
    return part;
}

// A cube at the origin, VNC under a magenta material, with an arm along each axis: one arm
// part placed six ways, red +X, green +Y, blue +Z, grey -X and -Y, and -Z in VNT under a
// cyan material. Its box is symmetric, so the origin is at the centre of every picture, one
// unit 14.25 pixels at 120 by 120. The cube's part is a temporary, as a reader may make
// one: its address must not pass for the next part's.
std::unique_ptr<Document> axisCross() {
    auto doc = std::make_unique<Document>();
    DocumentBuilder builder(*doc);
    const int root = builder.addNode(L"cross", -1, Matrix());
    builder.addPart(builder.addNode(L"cube", root, Matrix()),
                    boxPart({-1, -1, -1}, {1, 1, 1}, Layout::VNC), materialFromColor(1, 0, 1, 1));
    const auto arm = boxPart({1, -0.3, -0.3}, {4, 0.3, 0.3}, Layout::VN);
    const auto vntArm = boxPart({1, -0.3, -0.3}, {4, 0.3, 0.3}, Layout::VNT);
    // Where the arm's X and Y go; its Z follows.
    const struct {
        Vec3 x;
        Vec3 y;
        float color[3];
    } arms[] = {{{1, 0, 0}, {0, 1, 0}, {1, 0, 0}},        {{0, 1, 0}, {-1, 0, 0}, {0, 1, 0}},
                {{0, 0, 1}, {0, 1, 0}, {0, 0, 1}},        {{-1, 0, 0}, {0, -1, 0}, {.6f, .6f, .6f}},
                {{0, -1, 0}, {1, 0, 0}, {.6f, .6f, .6f}}, {{0, 0, -1}, {0, 1, 0}, {0, 1, 1}}};
    for (const auto& a : arms) {
        const Vec3 z{a.x[1] * a.y[2] - a.x[2] * a.y[1], a.x[2] * a.y[0] - a.x[0] * a.y[2],
                     a.x[0] * a.y[1] - a.x[1] * a.y[0]};
        Matrix place;
        for (std::size_t i = 0; i < 3; ++i) {
            place.m[i] = a.x[i];
            place.m[4 + i] = a.y[i];
            place.m[8 + i] = z[i];
        }
        builder.addPart(builder.addNode(L"arm", root, place), &a == &arms[5] ? vntArm : arm,
                        materialFromColor(a.color[0], a.color[1], a.color[2], 1));
    }
    builder.complete();
    doc->resizeAll();
    return doc;
}

class Pictures : public testing::Test {
protected:
    struct Model {
        std::string name;
        std::unique_ptr<Document> doc;
    };

    static void SetUpTestSuite() {
        models = new std::vector<Model>;
        models->push_back({"sample", loadSample(LoadOptions()).document});
        for (const std::string& path : {occtFile("step/screw.step"), occtFile("iges/bearing.iges"),
                                        assimpFile("Collada/duck.dae")})
            if (exists(path)) models->push_back({path, loadFile(path, LoadOptions()).document});
    }
    static void TearDownTestSuite() {
        delete models;
        models = nullptr;
    }
    static Document& sample() { return *models->front().doc; }

    static std::vector<Model>* models;
};
std::vector<Pictures::Model>* Pictures::models = nullptr;

// The root boxes are fitted to the picture, centred, with the margin to spare. Seen along
// an axis, a model's box is its outline: the picture is centred and the model reaches the
// margin on the side that limits the scale. Seen at an angle, it stays inside the margin.
TEST_F(Pictures, FillTheFrameWithinItsMargin) {
    if (models->size() < 4) GTEST_SKIP() << "sample files are not installed";
    const int width = 200;
    const int height = 150;
    const int margin = frameMargin(width, height);
    for (const auto& model : *models)
        for (const int view : {0, 1, 2, 3}) {
            SCOPED_TRACE(model.name + ", view " + std::to_string(view));
            const Coverage c = coverageOf(draw(*model.doc, view, width, height));
            ASSERT_GT(c.pixels, 0);
            // Give or take the pixel that a line on the border lands in.
            EXPECT_GE(std::min(c.left, c.top), margin - 1);
            EXPECT_LE(c.right, width - margin);
            EXPECT_LE(c.bottom, height - margin);
            if (view == 0) continue;
            EXPECT_NEAR(c.left + c.right + 1, width, 3);
            EXPECT_NEAR(c.top + c.bottom + 1, height, 3);
            EXPECT_LE(std::min(c.left, c.top), margin + 1);
        }
}

TEST_F(Pictures, PresetsTurnTheAxesAsTheirNamesSay) {
    const auto doc = axisCross();
    // Where the X, Y and Z arms point, across and up; 0, 0 for an arm that points at the
    // viewer (seen end-on at the centre) or away (hidden behind the cube).
    const struct {
        int view;
        int arms[3][2];
        Hue centre;
    } table[] = {
        {1, {{1, 0}, {0, 0}, {0, 1}}, Hue::Grey},   // front, from -Y
        {2, {{1, 0}, {0, 1}, {0, 0}}, Hue::Blue},   // top, from +Z
        {3, {{0, 0}, {1, 0}, {0, 1}}, Hue::Red},    // right, from +X
        {4, {{-1, 0}, {0, 0}, {0, 1}}, Hue::Green}, // back, from +Y
        {5, {{-1, 0}, {0, 1}, {0, 0}}, Hue::Cyan},  // bottom, from -Z
        {6, {{0, 0}, {-1, 0}, {0, 1}}, Hue::Grey},  // left, from -X
        {0, {{1, 1}, {-1, 1}, {0, 1}}, Hue::None},  // isometric, from -X -Y +Z
    };
    const Hue hues[3] = {Hue::Red, Hue::Green, Hue::Blue};
    for (const auto& e : table) {
        const Image image = draw(*doc, e.view, 120, 120);
        for (std::size_t axis = 0; axis < 3; ++axis) {
            SCOPED_TRACE("view " + std::to_string(e.view) + ", arm " + std::to_string(axis));
            const Spot spot = spotOf(image, hues[axis]);
            const int* direction = e.arms[axis];
            if (direction[0] == 0 && direction[1] == 0) {
                EXPECT_EQ(spot.pixels > 0, e.centre == hues[axis]);
                continue;
            }
            ASSERT_GT(spot.pixels, 50);
            for (std::size_t i = 0; i < 2; ++i)
                if (direction[i] == 0)
                    EXPECT_NEAR(spot.at[i], 0, 3);
                else
                    EXPECT_GT(spot.at[i] * direction[i], 4);
        }
        if (e.view == 0) continue;
        // The arm at the viewer covers the centre; the cube shows beside it, in the colour of
        // its vertices rather than its material's.
        EXPECT_TRUE(hueAt(image, 60, 60) == e.centre) << "view " << e.view;
        EXPECT_TRUE(hueAt(image, 69, 51) == Hue::Yellow) << "view " << e.view;
    }
}

TEST_F(Pictures, DrawOnlyWhatTheVisibilityBitsShow) {
    auto& sets = sample().runtime->visibility.sets;
    // Edges are the only pixels in their material's plain grey; shaded faces never are.
    const float grey = sample().scene->polylineMaterials.getValue(0).color[0];
    const int edge = static_cast<int>(std::lround(grey * 255));
    const Coverage all = coverageOf(draw(sample(), 0), edge);
    ASSERT_GT(all.grey, 100) << "edges are drawn over the faces";
    const auto shows = [&all](const Coverage& c) -> std::string {
        if (c.pixels == 0) return "nothing";
        if (c.grey == c.pixels) return "edges only";
        if (c.grey == 0) return "no edges";
        return c.pixels < all.pixels ? "less" : "everything";
    };

    const struct {
        const char* hidden;
        std::size_t set;
        int key; // -1: every key
        const char* shown;
    } cases[] = {{"every node", 0, -1, "nothing"},
                 {"the root, and so every node below it", 0, 0, "nothing"},
                 {"one part", 0, 1, "less"},
                 {"every face", 2, -1, "edges only"},
                 {"every edge", 3, -1, "no edges"}};
    for (const auto& c : cases) {
        const auto saved = sets;
        if (c.key < 0)
            sets[c.set].assign(sets[c.set].size(), false);
        else
            sets[c.set][static_cast<std::size_t>(c.key)] = false;
        EXPECT_EQ(shows(coverageOf(draw(sample(), 0), edge)), c.shown) << c.hidden;
        sets = saved;
    }

    // Without faces, a mesh goes by its own bit.
    const auto cross = axisCross();
    ASSERT_EQ(cross->topo->faces.size(), 0);
    cross->runtime->visibility.sets[7].assign(cross->runtime->visibility.sets[7].size(), false);
    EXPECT_EQ(coverageOf(draw(*cross, 0)).pixels, 0);
}

// At a time, a moving part stands where the animation puts it, in one frame that holds the
// whole animation; points show as squares in their own colours where their node shows.
TEST(RecordPictures, AnimationMovesPartsWithinOneFrameAndPointsShow) {
    Document doc;
    DocumentBuilder builder(doc);
    const int mover = builder.addNode(L"mover", -1, Matrix());
    builder.addPart(mover, boxPart({-1, -1, -1}, {1, 1, 1}, Layout::VN),
                    materialFromColor(1, 0, 0, 1));
    auto cloud = std::make_shared<PartGeometry>();
    cloud->points = std::make_shared<veksg::VertexInfo>();
    cloud->points->stride = 7;
    cloud->points->count = 2;
    cloud->points->data.reset(new float[14]{0, 0, -3, 0, 0, 1, 1, 0, 0, 3, 0, 1, 0, 1});
    const int points = builder.addNode(L"points", -1, Matrix());
    builder.addPart(points, cloud, materialFromColor(1, 1, 1, 1));
    Matrix far;
    far.m[12] = 8;
    builder.setAnimation({{0, 1000}, {mover}, {Matrix(), far}});
    builder.complete();
    doc.resizeAll();

    RenderOptions front;
    front.view = 1;
    front.width = 200;
    front.height = 100;
    front.timed = true;
    std::vector<double> across;
    for (const double time : {-10.0, 500.0, 2000.0}) {
        front.time = time;
        const Image image = render(doc, front);
        const Coverage red = coverageOf(image);
        across.push_back(spotOf(image, Hue::Red).at[0]);
        EXPECT_GE(red.left, frameMargin(200, 100));
        EXPECT_LT(red.right, 200 - frameMargin(200, 100));
        // Blue below, green above: the points stay put.
        EXPECT_LT(spotOf(image, Hue::Blue).at[1], -20);
        EXPECT_GT(spotOf(image, Hue::Green).at[1], 20);
    }
    EXPECT_NEAR(across[1] - across[0], across[2] - across[1], 1.0) << "halfway at 500 ms";
    EXPECT_GT(across[2] - across[0], 100);
    doc.runtime->visibility.sets[0][static_cast<std::size_t>(points)] = false;
    EXPECT_EQ(spotOf(render(doc, front), Hue::Blue).pixels, 0);
}

TEST_F(Pictures, PngKeepsEveryPixel) {
    if (!pngSupported()) GTEST_SKIP() << "built without libpng";
    const Image image = draw(sample(), 0, 97, 61);
    const std::string path = scratchDirectory() + "/sample.png";
    writePng(path, image);
    const Image back = readPng(path);
    EXPECT_EQ(back.width, 97);
    EXPECT_EQ(back.height, 61);
    EXPECT_TRUE(back.rgba == image.rgba);
    EXPECT_THROW(writePng(scratchDirectory() + "/missing/sample.png", image), std::runtime_error);
    EXPECT_THROW(readPng(scratchDirectory() + "/missing.png"), std::runtime_error);
}

} // namespace
} // namespace vekload::test
