// The script mode's contract: what a bad line, a bad file and a picture that cannot be written
// do to the output and the exit status.
#include <gtest/gtest.h>

#include "ViewerTests.h"

namespace vekview::test {
namespace {

std::string at(int line) {
    return "vekview: " + scratch("script.txt") + ":" + std::to_string(line) + ": ";
}

// Every line is checked before the first runs, so these need no display.
TEST(ViewerScript, ABadLineEndsTheRunBeforeAnythingRuns) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"size 64 48", "pick 1 1", "bogus 1"}, at(3) + "unknown command 'bogus'"},
        {{"view 9"}, at(1) + "view: 9 is out of range"},
        {{"", "# a comment", "size 64.5 48"}, at(3) + "size: '64.5' is not a whole number"},
        {{"pick 1"}, at(1) + "pick takes 2 numbers, not '1'"},
        {{"section 0 0 0 1"}, at(1) + "section needs a normal that is not zero"},
        {{"projection fisheye"}, at(1) + "projection is orthographic or perspective"},
        {{"screenshot"}, at(1) + "screenshot needs an argument"},
    };
    for (const auto& [lines, message] : cases) {
        const Outcome run = runScript(lines);
        EXPECT_EQ(run.status, 2) << message;
        EXPECT_EQ(run.err, message + "\n");
        EXPECT_EQ(run.out, "");
    }
}

TEST(ViewerScript, BadArgumentsExitTwoWithTheUsage) {
    for (const auto& args : std::vector<std::vector<std::string>>{
             {"--bogus"}, {"--script"}, {"--deflection", "-1"}, {"--script", "a", "b", "c"}}) {
        const Outcome run = runVekview(args);
        EXPECT_EQ(run.status, 2) << args.front();
        EXPECT_EQ(run.err.rfind("vekview: ", 0), 0u) << run.err;
    }
    EXPECT_EQ(runVekview({"--help"}).status, 0);
}

TEST(ViewerScript, AFileThatDoesNotLoadFailsAsInVekload) {
    const std::string missing = scratch("missing.step");
    const Outcome viewer = runScript({"open " + missing});
    const Outcome loader = runVekload(missing, 0, 8, 8, scratch("never.png"));
    EXPECT_EQ(viewer.status, 1);
    EXPECT_EQ(loader.status, 1);
    EXPECT_EQ(viewer.err.rfind("vekview: " + missing + ": ", 0), 0u) << viewer.err;
    EXPECT_EQ(viewer.err.substr(7), loader.err.substr(7));
}

TEST(ViewerScript, WhatOnlyTheModelCanTellFailsOnItsLine) {
    SKIP_WITHOUT_DISPLAY();
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"size 64 48", "hide no such node"}, at(2) + "no node 'no such node'"},
        {{"restore-view never saved"}, at(1) + "no saved view 'never saved'"},
        {{"annotation ⌀12"}, at(1) + "no annotation '⌀12'"},
        {{"size 64 48", "pick 64 10"}, at(2) + "64 10 lies outside the 64x48 view"},
    };
    for (const auto& [lines, message] : cases) {
        const Outcome run = runScript(lines);
        EXPECT_EQ(run.status, 2) << message;
        EXPECT_EQ(run.err, message + "\n");
    }
    const Outcome unwritable =
        runScript({"size 16 16", "screenshot " + scratch("no/such/dir.png")});
    EXPECT_EQ(unwritable.status, 1);
    EXPECT_EQ(unwritable.err,
              "vekview: " + scratch("no/such/dir.png") + ": No such file or directory\n");
}

TEST(ViewerScript, FramesReportTheirMeanTime) {
    SKIP_WITHOUT_DISPLAY();
    const Outcome run = runScript({"size 64 48", "frames 3"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out.rfind("frames 3: ", 0), 0u) << run.out;
    EXPECT_GT(std::stod(run.out.substr(10)), 0.0);
}

// The built-in sample's bores, its faces by draft class along Z and its thinnest wall.
TEST(ViewerScript, AnalysesOfTheSampleReportWhatTheyFound) {
    SKIP_WITHOUT_DISPLAY();
    const Outcome run = runScript({"size 64 48", "holes", "draft 0 0 1", "thickness"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "holes: ⌀8.6 through, ⌀8 through, ⌀8 through\n"
                       "draft: positive 5 negative 5 insufficient 24 mixed 0\n"
                       "thickness: thinnest 1.5 thickest 36.8 face 1\n");
}

} // namespace
} // namespace vekview::test
