#pragma once

#include <string>
#include <vector>

#include "Bounds.h"
#include "CadShapes.h"
#include "Document.h"

namespace vekhost {

/// A cylindrical hole recognised from the B-rep: inner cylinders and cones (material outside
/// them) on one axis whose lengths along it meet, in one node.
struct HoleFound {
    /// Where the hole opens, on its axis; the axis points from there into the material.
    Vec3 entry{0, 0, 0};
    Vec3 axis{0, 0, 1};
    /// Of its narrowest cylinder.
    double diameter = 0;
    /// From the entry to the far end of its last face, along the axis.
    double depth = 0;
    bool through = false;
    int node = -1;
    /// The hole's faces from the entry inwards; the narrowest cylinder's first.
    std::vector<int> faces;
    /// Per face: its diameter (a cone's widest) and its length along the axis.
    std::vector<double> stepDiameters;
    std::vector<double> stepLengths;
    std::wstring name;
};

/// Finds the holes of every node and records them in `document.features` and
/// `document.holeInfo`.
std::vector<HoleFound> findHoles(Document& document, const CadShapes& shapes);

} // namespace vekhost
