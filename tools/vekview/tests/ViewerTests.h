#pragma once

#include <string>
#include <vector>

#include "Render.h"

// What the viewer's tests share: running the program on a script, pictures and their masks.
namespace vekview::test {

/// Why no window opens here; empty when one does.
const std::string& noDisplay();

struct Outcome {
    int status = -1;
    std::string out;
    std::string err;
};

/// A path in the test program's scratch directory.
std::string scratch(const std::string& name);
/// Runs vekview with these arguments.
Outcome runVekview(const std::vector<std::string>& args);
/// Runs vekview on a script of `lines` with `files` after it on the command line.
Outcome runScript(const std::vector<std::string>& lines,
                  const std::vector<std::string>& files = {});
/// Runs vekload on the same picture: `file` (empty for the sample), preset `view`.
Outcome runVekload(const std::string& file, int view, int width, int height,
                   const std::string& png);
vekload::Image picture(const std::string& path);

using Mask = std::vector<bool>;
Mask covered(const vekload::Image& image);
/// Pixels whose colour or coverage differs.
Mask changed(const vekload::Image& a, const vekload::Image& b);
int count(const Mask& mask);
/// Intersection over union; 1 for two empty masks.
double iou(const Mask& a, const Mask& b);

} // namespace vekview::test

#define SKIP_WITHOUT_DISPLAY()                                                                     \
    if (!vekview::test::noDisplay().empty())                                                       \
    GTEST_SKIP() << "no display server can start: " << vekview::test::noDisplay()
