// Broken input loaded in this process: every case must end in a LoadError that names the
// cause, never in a crash, a hang or a half-filled document.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <string>

#include "Isolation.h"
#include "Loader.h"
#include "TestFiles.h"

namespace vekload::test {
using namespace vekhost;
using namespace vekhost::test;
namespace {

enum class Made { Missing, Directory, Empty, FromSample };

struct BadFile {
    const char* name;
    Made made;
    /// For a file made from a sample: its path below the sample directories, "occt:" or
    /// "assimp:" first, how many of its bytes to keep (-1: all) and how many to damage.
    const char* source;
    long bytes;
    int flips;
    const char* target;
    /// Part of the expected cause; empty when the reader library words it.
    const char* cause;
};

std::string sourcePath(const std::string& source) {
    if (source.rfind("occt:", 0) == 0) return occtFile(source.substr(5));
    return assimpFile(source.substr(7));
}

constexpr Made sample = Made::FromSample;

const BadFile badFiles[] = {
    {"missing", Made::Missing, "", 0, 0, "missing.step", "No such file"},
    {"directory", Made::Directory, "", 0, 0, "folder.step", "is a directory"},
    {"empty", Made::Empty, "", 0, 0, "empty.obj", "empty file"},
    {"unknown_extension", sample, "occt:step/screw.step", -1, 0, "screw.xyz",
     "unknown file type '.xyz'"},
    {"no_extension", sample, "occt:step/screw.step", -1, 0, "screw", "no file extension"},
    {"truncated_step", sample, "occt:step/screw.step", 40000, 0, "cut.step", "not a readable STEP"},
    {"damaged_step", sample, "occt:step/linkrods.step", -1, 20, "damaged.step", "in the STEP data"},
    {"truncated_iges", sample, "occt:iges/bearing.iges", 300000, 0, "cut.iges", "in the IGES data"},
    {"truncated_brep", sample, "occt:occ/bottle.brep", 100000, 0, "cut.brep",
     "not a readable BREP"},
    {"truncated_binary_stl", sample, "assimp:STL/Spider_binary.stl", 30000, 0, "cut.stl", "STL"},
    {"truncated_ascii_stl", sample, "assimp:STL/Spider_ascii.stl", 20000, 0, "cuta.stl",
     "truncated ASCII STL"},
    {"damaged_obj", sample, "assimp:OBJ/WusonOBJ.obj", -1, 40, "damaged.obj", ""},
    {"truncated_glb", sample, "assimp:glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb",
     100000, 0, "cut.glb", "GLTF"},
    {"damaged_gltf", sample, "assimp:glTF2/BoxTextured-glTF/BoxTextured.gltf", -1, 10,
     "damaged.gltf", ""},
};

// Names the case in test listings instead of dumping its bytes.
void PrintTo(const BadFile& file, std::ostream* out) {
    *out << file.name;
}

class BadFiles : public testing::TestWithParam<BadFile> {};

TEST_P(BadFiles, FailWithTheirCause) {
    const BadFile& bad = GetParam();
    const std::string target = scratchDirectory() + "/" + bad.target;
    if (bad.made == Made::FromSample) {
        if (!exists(sourcePath(bad.source))) GTEST_SKIP() << bad.source << " is not installed";
        copyDamaged(sourcePath(bad.source), target, bad.bytes, bad.flips, 1000);
    } else if (bad.made == Made::Directory) {
        std::filesystem::create_directories(target);
    } else if (bad.made == Made::Empty) {
        std::ofstream{target};
    }
    try {
        loadFile(target, LoadOptions());
        FAIL() << target << " loaded";
    } catch (const LoadError& error) {
        EXPECT_NE(std::string(error.what()), "");
        EXPECT_NE(std::string(error.what()).find(bad.cause), std::string::npos) << error.what();
    }
}

INSTANTIATE_TEST_SUITE_P(Cases, BadFiles, testing::ValuesIn(badFiles),
                         [](const testing::TestParamInfo<BadFile>& info) {
                             return std::string(info.param.name);
                         });

TEST(Isolation, TurnsACrashIntoAFailedReport) {
    const FileReport report = runIsolated(
        "crash.step",
        []() -> FileReport {
            std::raise(SIGSEGV);
            return {};
        },
        30);
    EXPECT_FALSE(report.ok);
    EXPECT_EQ(report.file, "crash.step");
    EXPECT_NE(report.error.find("crashed"), std::string::npos) << report.error;
}

} // namespace
} // namespace vekload::test
