// The tool's own small pieces: boxes, text conversion, options and the report's wire form.
#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

#include "Bounds.h"
#include "Options.h"
#include "Report.h"
#include "Text.h"
#include "Wire.h"

namespace vekload::test {
using namespace vekhost;
namespace {

double length(const Vec3& v) {
    return std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
}

// The corners and face centres of a 10 x 4 x 2 block turned 30 degrees about Z and moved
// far from the origin.
std::vector<float> turnedBlock() {
    const double turn = M_PI / 6;
    Matrix place;
    place.m = {
        std::cos(turn), std::sin(turn), 0,  0, -std::sin(turn), std::cos(turn), 0, 0, 0, 0, 1, 0,
        1000,           2000,           -5, 1};
    std::vector<float> points;
    for (double x : {-5.0, 0.0, 5.0})
        for (double y : {-2.0, 0.0, 2.0})
            for (double z : {-1.0, 1.0})
                for (const double c : place.point({x, y, z}))
                    points.push_back(static_cast<float>(c));
    return points;
}

TEST(Bounds, PrincipalAxesFitATurnedBlock) {
    const std::vector<float> points = turnedBlock();
    const OrientedBox box = fittedBox({{points.data(), points.size() / 3, 3}});
    ASSERT_TRUE(box.valid);
    std::vector<double> halves;
    for (const Vec3& axis : box.axes)
        halves.push_back(length(axis));
    std::sort(halves.begin(), halves.end());
    EXPECT_NEAR(halves[0], 1.0, 1e-3);
    EXPECT_NEAR(halves[1], 2.0, 1e-3);
    EXPECT_NEAR(halves[2], 5.0, 1e-3);
    EXPECT_NEAR(box.center[0], 1000.0, 1e-3);
    EXPECT_NEAR(box.center[1], 2000.0, 1e-3);
    // The axis-aligned box around it: half extents 5 cos 30 + 2 sin 30 and 5 sin 30 + 2 cos 30.
    const Box3 around = box.box();
    EXPECT_NEAR(around.max[0] - 1000.0, 5 * std::cos(M_PI / 6) + 1, 1e-3);
    EXPECT_NEAR(around.min[1] - 2000.0, -2.5 - 2 * std::cos(M_PI / 6), 1e-3);
    EXPECT_NEAR(around.max[2] - around.min[2], 2.0, 1e-3);
    EXPECT_FALSE(fittedBox({}).valid);
}

TEST(Bounds, PlacementsComposeParentFirst) {
    Matrix parent;
    parent.m[12] = 10; // move along X
    Matrix child;
    child.m = {0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}; // quarter turn about Z
    const Vec3 p = (parent * child).point({1, 0, 0});
    EXPECT_NEAR(p[0], 10.0, 1e-12);
    EXPECT_NEAR(p[1], 1.0, 1e-12);
    Box3 unit;
    unit.add(Vec3{0, 0, 0});
    unit.add(Vec3{2, 1, 1});
    const Box3 moved = unit.transformed(parent * child);
    EXPECT_NEAR(moved.min[0], 9.0, 1e-12);
    EXPECT_NEAR(moved.max[1], 2.0, 1e-12);
}

TEST(Text, ConvertsBetweenTheReadersTextAndWideStrings) {
    const std::string utf8 = "M8 \xc3\xa9"
                             "crou \xe2\x8c\x80 \xf0\x9f\x94\xa9";
    const std::wstring wide = wideFromUtf8(utf8);
    EXPECT_EQ(wide, std::wstring(L"M8 \u00e9crou \u2300 \U0001F529"));
    EXPECT_EQ(utf8FromWide(wide), utf8);
    const char16_t utf16[] = {u'a', 0xD83D, 0xDD29, 0xD800, u'b', 0};
    EXPECT_EQ(wideFromUtf16(utf16), std::wstring(L"a\U0001F529\uFFFDb"));
    EXPECT_EQ(wideFromUtf8("a\xff"
                           "b\xc3"),
              std::wstring(L"a\uFFFDb\uFFFD"));
    EXPECT_EQ(jsonEscape("a\"b\\c\nd\x01"), "a\\\"b\\\\c\\nd\\u0001");
}

TEST(Options, ParseEveryOptionAndKeepFilesInOrder) {
    const char* args[] = {"vekload",        "--json", "a.step",    "--check",
                          "--deflection",   "0.25",   "--timeout", "9",
                          "--no-isolation", "--",     "--b.obj"};
    const Options options = parseOptions(11, args);
    EXPECT_TRUE(options.json);
    EXPECT_TRUE(options.check);
    EXPECT_FALSE(options.isolate);
    EXPECT_DOUBLE_EQ(options.deflection, 0.25);
    EXPECT_DOUBLE_EQ(options.timeout, 9.0);
    EXPECT_EQ(options.files, (std::vector<std::string>{"a.step", "--b.obj"}));
}

TEST(Options, AnalysesTakeTheirSettings) {
    const char* args[] = {"vekload",     "--draft", "0,-2,0.5", "--thickness", "a.step",
                          "--thickness", "1.5",     "--draft",  "1,0,0,3"};
    const Options options = parseOptions(9, args);
    // The value of --thickness may be left out; what follows is then a file.
    EXPECT_EQ(options.files, (std::vector<std::string>{"a.step"}));
    EXPECT_TRUE(options.analyses.thickness);
    EXPECT_DOUBLE_EQ(options.analyses.thicknessMinimum, 1.5);
    EXPECT_TRUE(options.analyses.draft);
    EXPECT_EQ(options.analyses.pull, (std::array<double, 3>{1, 0, 0}));
    EXPECT_DOUBLE_EQ(options.analyses.draftMinimum, 3);
    EXPECT_FALSE(options.analyses.holes);
}

TEST(Report, SurvivesTheTripFromWorkerToParent) {
    FileReport report;
    report.file = "odd\tname\nwith\\escapes.step";
    report.ok = true;
    report.format = "STEP";
    report.times = {0.5, 0.25, 0.125, 0.0625};
    report.deflection = 0.1;
    report.records = {{"SCSceneTopo.faces", 37}, {"SCScene.meshes", 2}};
    report.bytes = {{"SCScene", 1234567890123LL}};
    report.checked = true;
    report.check.references = 99;
    report.check.problemCount = 2;
    report.check.problems = {"one\tproblem", "another"};

    const FileReport back = deserialize(serialize(report));
    EXPECT_EQ(back.file, report.file);
    EXPECT_TRUE(back.ok);
    EXPECT_EQ(back.format, "STEP");
    EXPECT_DOUBLE_EQ(back.times.fill, 0.125);
    EXPECT_DOUBLE_EQ(back.times.fillResizeShare(), (0.125 + 0.0625) / 0.9375);
    EXPECT_DOUBLE_EQ(back.deflection, 0.1);
    EXPECT_EQ(back.records, report.records);
    EXPECT_EQ(back.bytes, report.bytes);
    EXPECT_TRUE(back.checked);
    EXPECT_EQ(back.check.problemCount, 2);
    EXPECT_EQ(back.check.problems, report.check.problems);
}

} // namespace
} // namespace vekload::test
