// DXF drawings into the 2D component: a file written with dxflib's own writer holding one of
// each entity kind, nested blocks and hatches, read back to known answers; files that must be
// refused with one line; and every file of Debian's librecad-data.
#include <dxflib/dl_dxf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Check.h"
#include "Drawing.h"
#include "DrawingCheck.h"
#include "DxfReader.h"
#include "LoadError.h"
#include "Loader.h"
#include "TestFiles.h"

namespace vekhost::test {
namespace {

using drawing::Affine;
using drawing::Kind;

// Model space: a red-layer line, a closed polyline with a bulge of 0.5, a circle, an arc,
// an elliptic arc through its zero parameter, a spline, a solid and a pattern hatch, a text, a
// two-line MTEXT, a point, a linear dimension (which the records cannot hold), a line on a layer
// that is off, and "Outer" inserted at (100, 0) in green on layer Red. "Outer" holds a line and
// "Inner", coloured by block, turned 90 degrees at twice the size; "Inner", based at (5, 0), a
// circle of radius 5 at (10, 0) on layer 0 coloured by block.
std::string writeKnownDrawing() {
    std::string path = scratchDirectory() + "/known.dxf";
    DL_Dxf dxf;
    DL_WriterA* w = dxf.out(path.c_str(), DL_Codes::AC1015);
    const DL_Attributes byLayer("0", 256, -1, "BYLAYER", 1.0);
    dxf.writeHeader(*w);
    w->sectionEnd();
    w->sectionTables();
    w->tableLayers(3);
    dxf.writeLayer(*w, DL_LayerData("0", 0), DL_Attributes("0", 7, -1, "CONTINUOUS", 1.0));
    dxf.writeLayer(*w, DL_LayerData("Red", 0), DL_Attributes("", 1, -1, "CONTINUOUS", 1.0));
    dxf.writeLayer(*w, DL_LayerData("Off", 0), DL_Attributes("", -5, -1, "CONTINUOUS", 1.0));
    w->tableEnd();
    w->tableLinetypes(2);
    double dash[2] = {6, -3};
    dxf.writeLinetype(*w, DL_LinetypeData("CONTINUOUS", "", 0, 0, 0));
    dxf.writeLinetype(*w, DL_LinetypeData("DASHED", "", 0, 2, 9, dash));
    w->tableEnd();
    w->sectionEnd();
    w->sectionBlocks();
    dxf.writeBlock(*w, DL_BlockData("Inner", 0, 5, 0, 0));
    dxf.writeCircle(*w, DL_CircleData(10, 0, 0, 5), DL_Attributes("0", 0, -1, "BYLAYER", 1.0));
    dxf.writeEndBlock(*w, "Inner");
    dxf.writeBlock(*w, DL_BlockData("Outer", 0, 0, 0, 0));
    dxf.writeLine(*w, DL_LineData(0, 0, 0, 1, 0, 0), byLayer);
    dxf.writeInsert(*w, DL_InsertData("Inner", 0, 0, 0, 2, 2, 1, 90, 1, 1, 0, 0),
                    DL_Attributes("0", 0, -1, "BYLAYER", 1.0));
    dxf.writeEndBlock(*w, "Outer");
    w->sectionEnd();
    w->sectionEntities();
    dxf.writeLine(*w, DL_LineData(0, 0, 0, 10, 0, 0),
                  DL_Attributes("Red", 256, -1, "CONTINUOUS", 1.0));
    dxf.writePolyline(*w, DL_PolylineData(2, 0, 0, 1), byLayer);
    dxf.writeVertex(*w, DL_VertexData(0, 10, 0, 0.5));
    dxf.writeVertex(*w, DL_VertexData(20, 10, 0, 0));
    dxf.writePolylineEnd(*w);
    dxf.writeCircle(*w, DL_CircleData(50, 50, 0, 8), byLayer);
    dxf.writeArc(*w, DL_ArcData(50, 50, 0, 12, 0, 90), byLayer);
    dxf.writeEllipse(*w, DL_EllipseData(0, 50, 0, 10, 0, 0, 0.5, 5.5, 1), byLayer);
    dxf.writeSpline(*w, DL_SplineData(3, 8, 4, 0, 8), byLayer);
    for (const double x : {0.0, 10.0, 20.0, 30.0})
        dxf.writeControlPoint(*w, DL_ControlPointData(x, x == 10 || x == 20 ? 30 : 20, 0, 1));
    for (const double k : {0.0, 0.0, 0.0, 0.0, 1.0, 1.0, 1.0, 1.0})
        dxf.writeKnot(*w, DL_KnotData(k));
    for (const bool solid : {true, false}) {
        dxf.writeHatch1(*w, DL_HatchData(1, solid, 1, 0, solid ? "SOLID" : "ANSI31"), byLayer);
        dxf.writeHatchLoop1(*w, DL_HatchLoopData(4));
        const double y = solid ? 60 : 80;
        dxf.writeHatchEdge(*w, DL_HatchEdgeData(60, y, 70, y));
        dxf.writeHatchEdge(*w, DL_HatchEdgeData(70, y, 70, y + 10));
        dxf.writeHatchEdge(*w, DL_HatchEdgeData(70, y + 10, 60, y + 10));
        dxf.writeHatchEdge(*w, DL_HatchEdgeData(60, y + 10, 60, y));
        dxf.writeHatchLoop2(*w, DL_HatchLoopData(4));
        dxf.writeHatch2(*w, DL_HatchData(1, solid, 1, 0, solid ? "SOLID" : "ANSI31"), byLayer);
    }
    dxf.writeText(*w, DL_TextData(0, -20, 0, 0, 0, 0, 2.5, 1, 0, 0, 0, "Title", "STANDARD", 0),
                  byLayer);
    dxf.writeMText(
        *w, DL_MTextData(0, -30, 0, 1, 0, 0, 2.5, 50, 1, 1, 1, 1, "one\\Ptwo", "STANDARD", 0),
        byLayer);
    dxf.writePoint(*w, DL_PointData(5, 5, 0), DL_Attributes("0", 256, -1, "DASHED", 1.0));
    dxf.writeDimLinear(*w, DL_DimensionData(0, 0, 0, 5, 5, 0, 0, 5, 1, 1, "", "STANDARD", 0),
                       DL_DimLinearData(0, 0, 0, 10, 0, 0, 0, 0), byLayer);
    dxf.writeLine(*w, DL_LineData(0, 0, 0, 0, 10, 0),
                  DL_Attributes("Off", 256, -1, "BYLAYER", 1.0));
    dxf.writeInsert(*w, DL_InsertData("Outer", 100, 0, 0, 1, 1, 1, 0, 1, 1, 0, 0),
                    DL_Attributes("Red", 3, -1, "BYLAYER", 1.0));
    w->sectionEnd();
    w->dxfEOF();
    w->close();
    delete w;
    return path;
}

struct Read {
    vek2d::SCScene2D drawing;
    std::map<std::string, long long> notHeld;
};

Read readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    Read read;
    read.notHeld = readDxf(in, read.drawing);
    return read;
}

std::vector<const vek2d::Entity*> ofKind(const vek2d::SCScene2D& d, Kind kind) {
    std::vector<const vek2d::Entity*> found;
    for (const auto& e : d.entities)
        if (drawing::kindOf(e.style) == kind) found.push_back(&e);
    return found;
}

std::array<double, 2> placed(const vek2d::Entity& e, double x, double y) {
    return Affine::fromMatrix(e.matrix).apply(x, y);
}

// A DXF file with `entities` and `blocks` in their sections.
std::string dxfWith(const std::string& entities, const std::string& blocks = "") {
    return "0\nSECTION\n2\nBLOCKS\n" + blocks + "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n" + entities +
           "0\nENDSEC\n0\nEOF\n";
}

TEST(Dxf, WrittenByDxflibReadsBackToKnownRecords) {
    const Read read = readFile(writeKnownDrawing());
    const vek2d::SCScene2D& d = read.drawing;
    CheckResult check;
    checkDrawing(d, check);
    EXPECT_TRUE(check.ok()) << (check.problems.empty() ? "" : check.problems.front());
    EXPECT_EQ(read.notHeld, (std::map<std::string, long long>{{"DIMENSION", 1}}));
    ASSERT_EQ(d.sheets.size(), 1U);
    ASSERT_EQ(d.names, (std::vector<std::wstring>{L"0", L"Red", L"Off"}));
    EXPECT_EQ(d.values, (std::vector<int>{0, 0, drawing::hiddenLayer}));

    // Lines: the red one, the block's and the one on the hidden layer; the bulged polyline,
    // the spline, the point.
    const auto polylines = ofKind(d, Kind::Polyline);
    ASSERT_EQ(polylines.size(), 6U);
    const vek2d::Entity& red = *polylines[0];
    EXPECT_EQ(d.colors[static_cast<std::size_t>(red.value1)].color, veksg::Color4(1, 0, 0, 1));
    EXPECT_EQ(drawing::patternOf(red.style), drawing::Pattern::Solid);
    EXPECT_EQ(drawing::patternOf(polylines[3]->style), drawing::Pattern::Dashed);
    // The bulge over (0,10)-(20,10): counter-clockwise, so below the chord, round (10, 17.5)
    // with a radius of 12.5 within the tolerance.
    const vek2d::Entity& bulged = *polylines[1];
    EXPECT_TRUE(bulged.flag);
    EXPECT_GT(bulged.points.size(), 20U);
    double lowest = 10;
    for (const auto& p : bulged.points)
        if (p[1] < 10 - 1e-4) {
            EXPECT_NEAR(std::hypot(p[0] - 10, p[1] - 17.5), 12.5, 12.5 * 2e-4);
            lowest = std::min(lowest, static_cast<double>(p[1]));
        }
    EXPECT_NEAR(lowest, 5, 12.5 * 2e-4 + 1e-6);
    // A cubic Bezier's ends and its middle, (15, 27.5).
    const vek2d::Entity& spline = *polylines[2];
    EXPECT_NEAR(spline.points.front()[1], 20, 1e-5);
    EXPECT_NEAR(spline.points.back()[0], 30, 1e-5);
    const auto& middle = spline.points[spline.points.size() / 2];
    EXPECT_NEAR(middle[0], 15, 1e-4);
    EXPECT_NEAR(middle[1], 27.5, 1e-4);
    EXPECT_EQ(polylines[3]->points.size(), 1U);

    // Circle, arc, ellipse, and the circle of Inner through both inserts.
    const auto ellipses = ofKind(d, Kind::Ellipse);
    ASSERT_EQ(ellipses.size(), 4U);
    const vek2d::Ellipse& arc = d.ellipses[static_cast<std::size_t>(ellipses[1]->value2)];
    EXPECT_EQ(arc.param0, 0);
    EXPECT_EQ(arc.param1, drawing::turn / 4);
    const vek2d::Ellipse& flat = d.ellipses[static_cast<std::size_t>(ellipses[2]->value2)];
    EXPECT_EQ(flat.axis1, veksg::Point3(0, 5, 0));
    EXPECT_EQ(flat.param0, drawing::paramOf(5.5));
    EXPECT_NEAR(drawing::radiansOf(flat.param1 - flat.param0), 1 + 2 * drawing::pi - 5.5, 1e-6);
    // Inner's (10, 0) from its base point (5, 0), turned a quarter and doubled, then moved to
    // (100, 0): (100, 10).
    const vek2d::Entity& nested = *ellipses[3];
    const vek2d::Ellipse& inner = d.ellipses[static_cast<std::size_t>(nested.value2)];
    const auto centre = placed(nested, inner.center[0], inner.center[1]);
    EXPECT_NEAR(centre[0], 100, 1e-4);
    EXPECT_NEAR(centre[1], 10, 1e-4);
    const auto radius = Affine::fromMatrix(nested.matrix).applyVector(inner.axis0[0], 0);
    EXPECT_NEAR(std::hypot(radius[0], radius[1]), 10, 1e-4);
    // Coloured by block through both inserts: the outer one's green; on layer 0 in a block:
    // on the outer insert's layer.
    EXPECT_EQ(d.colors[static_cast<std::size_t>(nested.value1)].color, veksg::Color4(0, 1, 0, 1));
    const auto& onRed = drawing::layerEntities(d).getValue(1);
    EXPECT_NE(std::find(onRed.begin(), onRed.end(), nested.id), onRed.end());

    const auto hatches = ofKind(d, Kind::Hatch);
    ASSERT_EQ(hatches.size(), 2U);
    EXPECT_TRUE(hatches[0]->flag);
    EXPECT_TRUE(hatches[0]->points2.empty());
    EXPECT_FALSE(hatches[1]->flag);
    ASSERT_EQ(hatches[1]->points2.size(), 1U);
    EXPECT_NEAR(hatches[1]->points2[0][0], drawing::pi / 4, 1e-6);
    EXPECT_EQ(d.hatches[static_cast<std::size_t>(hatches[0]->value2)].loops.size(), 1U);

    const auto texts = ofKind(d, Kind::Text);
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_EQ(d.texts.getValue(texts[0]->value2).text, L"Title");
    EXPECT_EQ(d.texts.getValue(texts[1]->value2).text, L"one\ntwo");
    EXPECT_EQ(drawing::vAlignOf(d.texts.getValue(texts[1]->value2).attributes),
              drawing::VAlign::Top);
    // The entity on the layer that is off is there, listed under that layer.
    EXPECT_EQ(drawing::layerEntities(d).getValue(2).size(), 1U);

    // Seen from below (extrusion -Z), a circle's x is mirrored.
    std::istringstream mirrored(
        dxfWith("0\nCIRCLE\n10\n10\n20\n3\n40\n1\n210\n0\n220\n0\n230\n-1\n"));
    vek2d::SCScene2D seen;
    readDxf(mirrored, seen);
    ASSERT_EQ(seen.ellipses.size(), 1U);
    EXPECT_EQ(seen.ellipses[0].center, veksg::Point3(-10, 3, 0));
}

std::string blockInserting(const std::string& name, const std::string& inserted) {
    return "0\nBLOCK\n2\n" + name + "\n0\nINSERT\n2\n" + inserted + "\n0\nENDBLK\n";
}

TEST(Dxf, BadFilesEndInOneLineNamingTheCause) {
    const std::string line = "0\nLINE\n10\n0\n20\n0\n11\n1\n21\n1\n";
    std::string chain;
    for (int i = 0; i < 70; ++i)
        chain += blockInserting("B" + std::to_string(i), "B" + std::to_string(i + 1));
    const struct {
        std::string text;
        const char* cause;
    } cases[] = {
        {dxfWith(line).substr(0, 70), "truncated"},
        {dxfWith(line).substr(0, 40), "truncated"},
        {"not a\ndrawing\n", "is not a group code"},
        {"AutoCAD Binary DXF\r\n\x1a", "binary"},
        {dxfWith("0\nWIDGET\n"), "unknown entity kind 'WIDGET'"},
        {dxfWith("0\nINSERT\n2\nA\n", blockInserting("A", "A")), "'A' inserts itself"},
        {dxfWith("0\nINSERT\n2\nA\n", blockInserting("A", "B") + blockInserting("B", "A")),
         "inserts itself"},
        {dxfWith("0\nINSERT\n2\nB0\n", chain), "nest more than"},
        {dxfWith("0\nLWPOLYLINE\n90\n1000000000\n10\n0\n20\n0\n"), "more than the file holds"},
        {dxfWith("0\nSPLINE\n73\n2147483647\n"), "more than the file holds"},
        {dxfWith("0\nLINE\n10\nnan\n"), "not a finite number"},
        {dxfWith("0\nCIRCLE\n40\n1e300\n"), "out of range"},
        {dxfWith("0\nTEXT\n1\n" + std::string(2000, 'x') + "\n"), "longer than"},
        {dxfWith("0\nINSERT\n2\nA\n70\n2000\n71\n2000\n",
                 "0\nBLOCK\n2\nA\n" + line + "0\nENDBLK\n"),
         "more than"},
    };
    for (const auto& c : cases) {
        vek2d::SCScene2D drawing;
        std::istringstream in(c.text);
        try {
            readDxf(in, drawing, {100000, 1000000});
            ADD_FAILURE() << "read: " << c.text.substr(0, 60);
        } catch (const LoadError& error) {
            EXPECT_NE(std::string(error.what()).find(c.cause), std::string::npos) << error.what();
            EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
        }
    }
    // What those files break, their well-formed neighbours do not: an array of an empty block
    // costs nothing however large, a missing block is counted.
    vek2d::SCScene2D drawing;
    std::istringstream good(
        dxfWith(line + "0\nINSERT\n2\nA\n70\n30000\n71\n30000\n0\nINSERT\n2\nC\n",
                "0\nBLOCK\n2\nA\n0\nENDBLK\n"));
    EXPECT_EQ(readDxf(good, drawing),
              (std::map<std::string, long long>{{"INSERT (missing block)", 1}}));
    EXPECT_EQ(drawing.entities.size(), 1U);
}

// Every DXF file of Debian's librecad-data loads and passes the check, or is refused in one
// line; the tally goes to the test's output.
TEST(Dxf, EveryLibrecadFileLoadsAndChecksOrIsRefusedInOneLine) {
    const std::filesystem::path library("/usr/share/librecad/library");
    if (!std::filesystem::exists(library)) GTEST_SKIP() << "librecad-data is not installed";
    int loaded = 0;
    int refused = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(library)) {
        if (entry.path().extension() != ".dxf") continue;
        try {
            const LoadResult result = loadFile(entry.path().string(), {});
            const CheckResult check = checkDocument(*result.document);
            EXPECT_TRUE(check.ok()) << entry.path() << ": " << check.problems.front();
            ++loaded;
        } catch (const LoadError& error) {
            EXPECT_EQ(std::string(error.what()).find('\n'), std::string::npos);
            ++refused;
        }
    }
    std::cout << "librecad-data: " << loaded << " loaded and checked, " << refused << " refused\n";
    EXPECT_GT(loaded, 1000);
}

} // namespace
} // namespace vekhost::test
