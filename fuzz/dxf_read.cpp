// The DXF reader on arbitrary bytes: it refuses them with a LoadError or makes a drawing that
// passes the drawing's check and can be drawn. Anything else (a crash, a leak, another
// exception, a drawing the check faults) is a finding.
#include <cstdint>
#include <sstream>
#include <string>

#include "DrawingCheck.h"
#include "DrawingRender.h"
#include "DxfReader.h"
#include "FuzzCheck.h"
#include "LoadError.h"

// Fontconfig keeps 288 bytes of its configuration where LeakSanitizer does not see them,
// once per process (tests/lsan.supp says the same for the test programs).
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer's own hook, by its name.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    vek2d::SCScene2D drawing;
    try {
        // Limits far below the tool's keep each run short; the code paths are the same.
        vekhost::readDxf(in, drawing, {20000, 200000});
    } catch (const vekhost::LoadError&) {
        return 0;
    }
    vekhost::CheckResult check;
    vekhost::checkDrawing(drawing, check);
    if (!check.ok()) std::fprintf(stderr, "%s\n", check.problems.front().c_str());
    FUZZ_CHECK(check.ok());
    if (!drawing.sheets.empty()) {
        vekhost::SheetPicture picture;
        picture.width = 64;
        picture.height = 48;
        FUZZ_CHECK(vekhost::drawSheetImage(drawing, picture).pixels.size() == std::size_t{64} * 48);
    }
    return 0;
}
