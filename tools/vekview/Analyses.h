#pragma once

#include <string>
#include <vector>

#include "Draft.h"
#include "Session.h"

namespace vekview {

/// The host's analyses of the session's CAD load, run on request; each returns what the
/// viewer lists and selects. All need a load with its B-rep (`model().shapes`).
class Analyses {
public:
    explicit Analyses(Session& session) : session(session) {}

    /// Finds the holes of every node (`SCFeatures`, `SCHoleInfo`); returns how many.
    std::size_t findHoles();
    /// The faces of hole `hole` of `SCHoleInfo::holeRecords`, from its entry inwards.
    std::vector<int> holeFaces(std::size_t hole) const;
    /// The draft against `pull` with a minimum of one degree (`SCDraftAngleAnalysis`).
    void draft(const Vec3& pull);
    /// The faces of one class of the last draft analysis.
    std::vector<int> facesOf(vekhost::DraftClass kind) const;
    /// The wall thickness at every vertex (`SCThicknessAnalysis`); false when no ray found
    /// a wall.
    bool thickness();
    /// The least and greatest wall of the last thickness analysis, and the face of the least.
    double thinnest() const;
    double thickest() const;
    int thinnestFace() const;

    /// Makes the faces the selection, so that they light up.
    void select(const std::vector<int>& faces);

private:
    Session& session;
};

} // namespace vekview
