#pragma once

#include <TopoDS_Shape.hxx>

#include <string>

#include "CadShapes.h"
#include "Document.h"
#include "Progress.h"
#include "Projection.h"

namespace vekhost {

/// Where the views of a multiview drawing go: first-angle (ISO method E: the top view below
/// the front view, the right view to its left) or third-angle (the top view above the front
/// view, the right view to its right).
enum class ProjectionAngle { First, Third };

struct SheetOptions {
    HiddenLines method = HiddenLines::Exact;
    ProjectionAngle angle = ProjectionAngle::First;
    /// For the title block.
    std::wstring title;
    std::wstring date;
    /// Told of each view; not owned, may be null.
    Progress* progress = nullptr;
};

/// Adds an A3 sheet with the front, top, right and isometric views of `shape` to `drawing`
/// (hidden edges dashed but in the isometric view), at the largest standard scale that fits,
/// with view names, a frame and a title block (title, scale, date, projection). Returns the
/// scale, paper millimetres per model unit, which is also stored as the drawing's `scale`.
double projectSheet(const TopoDS_Shape& shape, vek2d::SCScene2D& drawing,
                    const SheetOptions& options);

/// Every root node's shape of a CAD load, placed, in one compound.
TopoDS_Shape rootShape(const Document& document, const CadShapes& shapes);

/// "1:2", "5:1" and the like.
std::string scaleText(double scale);

} // namespace vekhost
