#pragma once

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace vekload {

/// The analyses asked for; each runs only when its flag is set.
struct AnalysisRequest {
    bool draft = false;
    std::array<double, 3> pull{0, 0, 1};
    /// Degrees.
    double draftMinimum = 1;
    bool thickness = false;
    /// Walls under this count as thin; 0 counts none.
    double thicknessMinimum = 0;
    bool holes = false;
    /// The reference to compare with; empty for none.
    std::string compare;
    bool any() const { return draft || thickness || holes || !compare.empty(); }
};

struct Options {
    bool json = false;
    bool check = false;
    /// 0: chosen from each model's size.
    double deflection = 0;
    double timeout = 300;
    /// Each file is loaded in a child process unless this is off.
    bool isolate = true;
    bool help = false;
    /// Where to write a picture of the model; empty for none.
    std::string png;
    /// Orientation preset of the picture, a key of `SCView::orientations`.
    int view = 0;
    int width = 256;
    int height = 256;
    /// Draw the animation at `time` milliseconds from its start instead of the resting model.
    bool timed = false;
    double time = 0;
    /// The saved view whose camera and annotations the picture shows; empty for all
    /// annotations under the preset `view`.
    std::string pmiView;
    /// Where to write a drawing sheet (PNG, SVG or PDF); empty for none.
    std::string drawing;
    /// Views of a CAD file in third-angle projection instead of first-angle.
    bool thirdAngle = false;
    /// Hidden lines from the tessellation instead of the exact B-rep.
    bool polygonalHidden = false;
    /// `--size` was given (a drawing's PNG is otherwise sized by its page).
    bool sized = false;
    /// Where to write a snapshot of the loaded document; empty for none.
    std::string save;
    /// zstd's level for the snapshot, 0 for none.
    int saveLevel = 1;
    AnalysisRequest analyses;
    std::vector<std::string> files;
};

/// Throws std::invalid_argument naming the offending argument.
Options parseOptions(int argc, const char* const* argv);
const char* usage();

} // namespace vekload
