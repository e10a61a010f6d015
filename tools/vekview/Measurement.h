#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CadShapes.h"
#include "Document.h"
#include "Picker.h"

namespace vekview {

enum class MeasureMode {
    /// Distance between two picked surface points.
    Points,
    /// Shortest distance between two picked faces or edges (an edge wins where one is
    /// under the cursor), on the exact geometry.
    Entities,
    /// Radius of a picked circular edge.
    Radius,
    /// Angle between two picked planar faces.
    Angle,
};

struct MeasureResult {
    bool ok = false;
    double value = 0;
    /// The label shown with the markers, or why nothing could be measured.
    std::string text;
};

/// Measurements on picks, kept as temporary graphics of the document: every picked point in
/// `SCTempGraphics::tempValues`; each result as a `Measure` in `measures` (the two ends in
/// `point1` and `point2`, the label's place in `point3`, the value, the label in
/// `measureText`, a leader line between the ends, `measureSetting` the mode, 1 to 4), and
/// its label, the measure's `text3d`, in `texts3d`. Exact geometry comes from the load's
/// B-rep; mesh files have points only.
class Measurement {
public:
    Measurement(vekhost::Document& document, std::shared_ptr<const vekhost::CadShapes> shapes);

    MeasureMode mode() const { return current; }
    /// Starts over in another mode.
    void setMode(MeasureMode mode);
    /// Picks still needed before the mode measures.
    int picksNeeded() const;
    /// Takes a pick. When the mode has what it needs it measures and returns the result;
    /// until then it returns nothing. A pick of the wrong kind gives a result that says so.
    std::optional<MeasureResult> add(const Pick& pick);
    /// Throws every marker and result away (`SCTempGraphics::cleanup`).
    void clear();
    /// The area of a face on the exact geometry; nothing for mesh files.
    std::optional<double> faceArea(int face) const;

private:
    MeasureResult points(const Pick& a, const Pick& b);
    MeasureResult entities(const Pick& a, const Pick& b);
    MeasureResult radius(const Pick& pick);
    MeasureResult angle(const Pick& a, const Pick& b);
    void record(const Vec3& from, const Vec3& to, const Vec3& labelAt, double value,
                const std::string& label);

    vekhost::Document& doc;
    std::shared_ptr<const vekhost::CadShapes> shapes;
    MeasureMode current = MeasureMode::Points;
    std::vector<Pick> picks;
};

/// The names of the surface and curve types that `SCSceneTopo::refs14b`, `refs15b` and
/// `Edge::kind` hold (Open CASCADE's GeomAbs numbering); "unknown" for other numbers.
const char* surfaceTypeName(int kind);
const char* curveTypeName(int kind);

} // namespace vekview
