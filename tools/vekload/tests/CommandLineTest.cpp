// The vekload program as users run it: exit status, one stderr line per bad file, good files
// still reported, JSON and argument errors.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "Png.h"
#include "TestFiles.h"

namespace vekload::test {
using namespace vekhost::test;
namespace {

struct Outcome {
    int status = -1;
    std::string out;
    std::vector<std::string> errLines;
};

std::string slurp(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

Outcome run(const std::vector<std::string>& args) {
    const std::string out = scratchDirectory() + "/out.txt";
    const std::string err = scratchDirectory() + "/err.txt";
    std::string command = std::string("'") + VEKLOAD_EXECUTABLE + "'";
    for (const std::string& arg : args)
        command += " '" + arg + "'";
    command += " >'" + out + "' 2>'" + err + "'";
    Outcome result;
    const int status = std::system(command.c_str());
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = slurp(out);
    std::istringstream lines(slurp(err));
    for (std::string line; std::getline(lines, line);)
        result.errLines.push_back(line);
    return result;
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

TEST(CommandLine, ReportsGoodFilesAndOneLinePerBadOne) {
    const std::string screw = occtFile("step/screw.step");
    const std::string spider = assimpFile("STL/Spider_binary.stl");
    if (!exists(screw) || !exists(spider)) GTEST_SKIP() << "sample files are not installed";
    const std::string dir = scratchDirectory();
    // What each bad file's cause is, is the in-process tests' business.
    copyDamaged(occtFile("step/linkrods.step"), dir + "/damaged.step", -1, 20, 1000);
    const std::vector<std::string> bad = {dir + "/missing.step", dir + "/damaged.step", dir};

    const Outcome result = run({"--check", screw, bad[0], bad[1], bad[2], spider});
    EXPECT_EQ(result.status, 1);
    ASSERT_EQ(result.errLines.size(), bad.size());
    for (std::size_t i = 0; i < bad.size(); ++i) {
        const std::string prefix = "vekload: " + bad[i] + ": ";
        EXPECT_EQ(result.errLines[i].rfind(prefix, 0), 0u) << result.errLines[i];
        EXPECT_GT(result.errLines[i].size(), prefix.size()) << "a cause follows the name";
    }
    EXPECT_TRUE(contains(result.out, screw + ": STEP")) << result.out;
    EXPECT_TRUE(contains(result.out, spider + ": STL")) << result.out;
    EXPECT_FALSE(contains(result.out, "missing.step"));
}

TEST(CommandLine, SavesASnapshotAndReopensItByItsOwnPhases) {
    const std::string saved = scratchDirectory() + "/sample.vks";
    const Outcome save = run({"--json", "--save", saved});
    EXPECT_EQ(save.status, 0);
    EXPECT_TRUE(contains(save.out, "\"saved\": {\"file\": \"" + saved)) << save.out;
    const Outcome reopen = run({"--check", saved});
    EXPECT_EQ(reopen.status, 0);
    EXPECT_TRUE(contains(reopen.out, saved + ": snapshot\n  time     read ")) << reopen.out;
    EXPECT_TRUE(contains(reopen.out, "decompress")) << reopen.out;
    EXPECT_TRUE(contains(reopen.out, "all consistent")) << reopen.out;
    const std::string cut = scratchDirectory() + "/cut.vks";
    copyDamaged(saved, cut, 1000);
    const Outcome broken = run({cut});
    EXPECT_EQ(broken.status, 1);
    ASSERT_EQ(broken.errLines.size(), 1u);
    EXPECT_EQ(broken.errLines[0].rfind("vekload: " + cut + ": snapshot: ", 0), 0u)
        << broken.errLines[0];
    EXPECT_EQ(run({"--level", "3"}).status, 2);
}

TEST(CommandLine, WritesOneJsonDocumentWithEveryFile) {
    const std::string missing = scratchDirectory() + "/missing.igs";
    const Outcome result = run({"--json", "--check", missing});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out.rfind("{\"files\": [", 0), 0u) << result.out;
    EXPECT_TRUE(contains(result.out, "\"file\": \"" + missing + "\", \"ok\": false, \"error\": "))
        << result.out;
    EXPECT_TRUE(contains(result.out, "]}\n"));
}

// Without files, plain text is what the README shows; its exit status is a test of its own.
TEST(CommandLine, LoadsTheSampleWithoutFiles) {
    const Outcome json = run({"--json", "--check", "--deflection", "0.05"});
    EXPECT_EQ(json.status, 0);
    EXPECT_TRUE(contains(json.out, "\"deflection\": 0.05,")) << json.out;
    EXPECT_TRUE(contains(json.out, "\"problemCount\": 0,")) << json.out;
    EXPECT_TRUE(contains(json.out, "\"SCSceneTopo.nodes\": 5")) << json.out;
}

TEST(CommandLine, GivesUpOnAFilePastTheTimeout) {
    const std::string file = occtFile("step/linkrods.step");
    if (!exists(file)) GTEST_SKIP() << file << " is not installed";
    const Outcome result = run({"--timeout", "0.001", file});
    EXPECT_EQ(result.status, 1);
    ASSERT_EQ(result.errLines.size(), 1u);
    EXPECT_TRUE(contains(result.errLines[0], "gave up after 0.001 s")) << result.errLines[0];
}

TEST(CommandLine, RejectsBadArgumentsWithUsage) {
    const std::vector<std::vector<std::string>> cases = {
        {"--deflection"},
        {"--deflection", "-1"},
        {"--deflection", "0.1mm"},
        {"--timeout", "nan"},
        {"--frobnicate"},
        {"--png"},
        {"--png", "a.png", "--view", "7"},
        {"--png", "a.png", "--view", "-1"},
        {"--png", "a.png", "--view", "1.5"},
        {"--png", "a.png", "--size", "0x10"},
        {"--png", "a.png", "--size", "640"},
        {"--png", "a.png", "--size", "64x48x2"},
        {"--view", "2"},
        {"--time", "5"},
        {"--png", "a.png", "--time", "soon"},
        {"--png", "a.png", "one.step", "two.step"},
        {"--drawing", "a.gif"},
        {"--drawing", "a.pdf", "one.dxf", "two.dxf"},
        {"--drawing", "a.pdf", "--hidden", "fuzzy"},
        {"--projection", "third"},
        {"--size", "64x48"},
        {"--draft", "0,0,0"},
        {"--draft", "0,1"},
        {"--draft", "0,0,1,90"},
        {"--draft", "0,0,1,1,1"},
        {"--draft", "0,0,1,"},
        {"--compare"},
    };
    for (const auto& args : cases) {
        const Outcome result = run(args);
        EXPECT_EQ(result.status, 2) << args.front();
        ASSERT_FALSE(result.errLines.empty());
        EXPECT_TRUE(contains(result.errLines[0], "vekload: ")) << result.errLines[0];
        EXPECT_TRUE(result.out.empty());
    }
    EXPECT_EQ(run({"--help"}).status, 0);
}

TEST(CommandLine, DrawsTheModelIntoAPng) {
    if (!pngSupported()) GTEST_SKIP() << "built without libpng";
    const std::string png = scratchDirectory() + "/sample.png";
    const Outcome result = run({"--png", png, "--view", "3", "--size", "64x48"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.errLines.empty());
    EXPECT_TRUE(contains(result.out, "built-in sample")) << "the summary still comes";
    const Image picture = readPng(png);
    EXPECT_EQ(picture.width, 64);
    EXPECT_EQ(picture.height, 48);

    // A picture that cannot be written fails its file.
    const std::string nowhere = scratchDirectory() + "/missing/sample.png";
    const Outcome failed = run({"--png", nowhere});
    EXPECT_EQ(failed.status, 1);
    ASSERT_EQ(failed.errLines.size(), 1u);
    EXPECT_TRUE(contains(failed.errLines[0], nowhere)) << failed.errLines[0];
}

// A drawing of either source, the report's drawing section, and a file with nothing to draw.
TEST(CommandLine, WritesDrawingsOfDxfAndCadFiles) {
    const std::string dir = scratchDirectory();
    const std::string dxf = dir + "/lines.dxf";
    std::ofstream(dxf) << "0\nSECTION\n2\nENTITIES\n0\nLINE\n10\n0\n20\n0\n11\n9\n21\n9\n"
                          "0\nIMAGE\n10\n0\n20\n0\n0\nENDSEC\n0\nEOF\n";
    const Outcome sheet = run({"--json", "--check", "--drawing", dir + "/lines.svg", dxf});
    EXPECT_EQ(sheet.status, 0);
    EXPECT_TRUE(contains(slurp(dir + "/lines.svg"), "<svg"));
    EXPECT_TRUE(contains(sheet.out, "\"drawing\": {\"tables\": {\"sheets\": 1, \"views\": 1"))
        << sheet.out;
    EXPECT_TRUE(contains(sheet.out, "\"notHeld\": {\"IMAGE\": 1}")) << sheet.out;

    const Outcome views = run({"--drawing", dir + "/sample.pdf", "--projection", "third"});
    EXPECT_EQ(views.status, 0);
    EXPECT_EQ(slurp(dir + "/sample.pdf").compare(0, 5, "%PDF-"), 0);
    EXPECT_TRUE(contains(views.out, "views projected with exact hidden lines")) << views.out;

    const std::string spider = assimpFile("STL/Spider_binary.stl");
    if (!exists(spider)) GTEST_SKIP() << "sample files are not installed";
    const Outcome mesh = run({"--drawing", dir + "/spider.png", spider});
    EXPECT_EQ(mesh.status, 1);
    ASSERT_EQ(mesh.errLines.size(), 1U);
    EXPECT_TRUE(contains(mesh.errLines[0], "no drawing to write")) << mesh.errLines[0];
}

// Scripts rely on these keys; the values themselves are the host library's tests' business.
TEST(CommandLine, ReportsTheAnalysesAskedFor) {
    const std::string screw = occtFile("step/screw.step");
    if (!exists(screw)) GTEST_SKIP() << screw << " is not installed";
    const Outcome json = run({"--json", "--draft", "0,0,1,2", "--thickness", "0.5", "--holes",
                              "--compare", screw, screw});
    EXPECT_EQ(json.status, 0) << json.out;
    for (const char* part : {"\"analyses\": {\"draft\": [{\"key\": 0, \"min\": ", "\"class\": \"",
                             "\"thickness\": {\"min\": ", "\"below\": ", "\"holes\": [",
                             "\"compare\": {\"min\": 0, \"max\": 0, \"mean\": 0, \"rms\": 0}"})
        EXPECT_TRUE(contains(json.out, part)) << part << " in " << json.out;

    const Outcome text = run({"--holes", "--draft", "1,0,0"});
    EXPECT_EQ(text.status, 0);
    EXPECT_TRUE(contains(text.out, "analyses draft along (1, 0, 0), minimum 1 degrees: "))
        << text.out;
    EXPECT_TRUE(contains(text.out, "holes: ")) << text.out;

    // A reference that does not load fails the file it was to be compared with.
    const std::string missing = scratchDirectory() + "/missing.step";
    const Outcome failed = run({"--compare", missing, screw});
    EXPECT_EQ(failed.status, 1);
    ASSERT_EQ(failed.errLines.size(), 1u);
    EXPECT_TRUE(contains(failed.errLines[0], missing)) << failed.errLines[0];
}

} // namespace
} // namespace vekload::test
