// Pictures drawn from the filled components alone: what they cover against what the boxes
// predict, which way each preset turns a model, and what the visibility bits leave out.
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
    // Inclusive pixel bounds; right < left when nothing is covered.
    int left = INT_MAX;
    int top = INT_MAX;
    int right = -1;
    int bottom = -1;
};

Coverage coverageOf(const Image& image) {
    Coverage c;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x) {
            if (!image.covered(x, y)) continue;
            ++c.pixels;
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

// Where the root nodes' boxes land: their corners, turned by the preset, span a box whose
// larger relative extent fills the picture but its margins, centred.
struct Frame {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

Frame predictedFrame(const Document& doc, int view, int width, int height) {
    Matrix turn;
    for (std::size_t i = 0; i < 16; ++i)
        turn.m[i] = doc.views->orientations.getValue(view)[static_cast<int>(i)];
    Box3 seen;
    for (int node = 0; node < doc.topo->nodes.size(); ++node) {
        if (doc.topo->nodeRefs1.getValue(node) >= 0) continue;
        const veksg::BBox& box = doc.scene->boxes.getValue(node);
        seen.add(
            Box3{{box.min[0], box.min[1], box.min[2]}, {box.max[0], box.max[1], box.max[2]}, true}
                .transformed(turn));
    }
    const double extent[2] = {seen.max[0] - seen.min[0], seen.max[1] - seen.min[1]};
    const int margin = frameMargin(width, height);
    const double scale =
        std::min((width - 2.0 * margin) / extent[0], (height - 2.0 * margin) / extent[1]);
    const double across = extent[0] * scale;
    const double up = extent[1] * scale;
    return {(width - across) / 2, (height - up) / 2, (width + across) / 2, (height + up) / 2};
}

// Pixels whose coverage differs from that of the other picture, or of its mirror image.
long mismatch(const Image& a, const Image& b, bool mirrored) {
    long differ = 0;
    for (int y = 0; y < a.height; ++y)
        for (int x = 0; x < a.width; ++x)
            differ += a.covered(x, y) != b.covered(mirrored ? a.width - 1 - x : x, y) ? 1 : 0;
    return differ;
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

TEST_F(Pictures, CoverWhatTheProjectedBoxesPredict) {
    if (models->size() < 4) GTEST_SKIP() << "sample files are not installed";
    for (const auto& model : *models)
        for (const int view : {0, 1, 2, 3}) {
            SCOPED_TRACE(model.name + ", view " + std::to_string(view));
            const Image image = draw(*model.doc, view, 200, 150);
            ASSERT_EQ(image.width, 200);
            ASSERT_EQ(image.height, 150);
            const Coverage c = coverageOf(image);
            const Frame f = predictedFrame(*model.doc, view, 200, 150);
            ASSERT_GT(c.pixels, 0);
            // Inside the frame, give or take the pixel that a line on its border lands in.
            EXPECT_GE(c.left, std::floor(f.left) - 1);
            EXPECT_GE(c.top, std::floor(f.top) - 1);
            EXPECT_LE(c.right, std::ceil(f.right));
            EXPECT_LE(c.bottom, std::ceil(f.bottom));
            const double area = (f.right - f.left) * (f.bottom - f.top);
            EXPECT_LE(c.pixels, area + 2 * (f.right - f.left + f.bottom - f.top));
            EXPECT_GT(c.pixels, 0.2 * area) << "a sliver of the frame";
            // Seen along an axis, an axis-aligned box fits its model on every side.
            if (view == 0) continue;
            EXPECT_NEAR(c.left, f.left, 2.0);
            EXPECT_NEAR(c.right + 1, f.right, 2.0);
            EXPECT_NEAR(c.top, f.top, 2.0);
            EXPECT_NEAR(c.bottom + 1, f.bottom, 2.0);
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

TEST_F(Pictures, OppositeViewsAreMirrorImages) {
    // Front and back, top and bottom, right and left: each pair swaps the picture's right.
    for (const auto& model : *models) {
        SCOPED_TRACE(model.name);
        for (const auto& [a, b] : {std::pair{1, 4}, {2, 5}, {3, 6}}) {
            const Image one = draw(*model.doc, a);
            const Image other = draw(*model.doc, b);
            const long covered = coverageOf(one).pixels;
            EXPECT_LE(mismatch(one, other, true), covered / 100 + 10)
                << "views " << a << " and " << b;
        }
    }
    // The duck looks one way, so the mirror above is not a plain copy.
    if (models->size() < 4) return;
    const Document& duck = *models->back().doc;
    EXPECT_GT(mismatch(draw(duck, 1), draw(duck, 4), false), coverageOf(draw(duck, 1)).pixels / 20);
}

TEST_F(Pictures, DrawOnlyWhatTheVisibilityBitsShow) {
    auto& sets = sample().runtime->visibility.sets;
    // Edges are the only pixels in their material's plain grey; shaded faces never are.
    const float grey = sample().scene->polylineMaterials.getValue(0).color[0];
    const int edge = static_cast<int>(std::lround(grey * 255));
    auto coveredAndEdges = [edge] {
        const Image image = draw(sample(), 0);
        long covered = 0;
        long edges = 0;
        for (int y = 0; y < image.height; ++y)
            for (int x = 0; x < image.width; ++x) {
                const std::uint8_t* p = image.pixel(x, y);
                covered += image.covered(x, y) ? 1 : 0;
                edges += image.covered(x, y) && p[0] == edge && p[1] == edge && p[2] == edge;
            }
        return std::pair{covered, edges};
    };
    const auto [all, allEdges] = coveredAndEdges();
    ASSERT_GT(allEdges, 100) << "edges are drawn over the faces";

    enum Expect { Nothing, Less, EdgesOnly, NoEdges };
    const struct {
        const char* hidden;
        std::size_t set;
        int key; // -1: every key
        Expect expect;
    } cases[] = {{"every node", 0, -1, Nothing},
                 {"the root, and so every node below it", 0, 0, Nothing},
                 {"one part", 0, 1, Less},
                 {"every face", 2, -1, EdgesOnly},
                 {"every edge", 3, -1, NoEdges}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.hidden);
        const auto saved = sets;
        if (c.key < 0)
            sets[c.set].assign(sets[c.set].size(), false);
        else
            sets[c.set][static_cast<std::size_t>(c.key)] = false;
        const auto [covered, edges] = coveredAndEdges();
        sets = saved;
        EXPECT_EQ(covered > 0, c.expect != Nothing);
        switch (c.expect) {
        case Less:
            EXPECT_LT(covered, all);
            break;
        case EdgesOnly:
            EXPECT_EQ(edges, covered);
            break;
        case NoEdges:
            EXPECT_EQ(edges, 0);
            break;
        case Nothing:
            break;
        }
    }

    // Without faces, a mesh goes by its own bit.
    const auto cross = axisCross();
    ASSERT_EQ(cross->topo->faces.size(), 0);
    cross->runtime->visibility.sets[7].assign(cross->runtime->visibility.sets[7].size(), false);
    EXPECT_EQ(coverageOf(draw(*cross, 0)).pixels, 0);
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
