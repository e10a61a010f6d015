#include "Analyses.h"

#include "Holes.h"
#include "RayScene.h"
#include "Thickness.h"

namespace vekview {

std::size_t Analyses::findHoles() {
    return vekhost::findHoles(session.document(), *session.model().shapes).size();
}

std::vector<int> Analyses::holeFaces(std::size_t hole) const {
    std::vector<int> faces;
    const auto& groups = session.document().holeInfo->holeGroups1;
    const auto found = groups.find(static_cast<int>(hole));
    if (found == groups.end()) return faces;
    for (const veksg::HoleGroupEntry& step : found->second)
        faces.push_back(step.face);
    return faces;
}

void Analyses::draft(const Vec3& pull) {
    vekhost::DraftSettings settings;
    settings.pull = {pull[0], pull[1], pull[2]};
    vekhost::analyseDraft(session.document(), vekhost::PlacedMesh::of(session.document()),
                          settings);
}

std::vector<int> Analyses::facesOf(vekhost::DraftClass kind) const {
    const veksg::SCDraftAngleAnalysis& result = *session.document().draft;
    std::vector<int> faces;
    if (!result.computed) return faces;
    for (std::size_t face = 0; face < result.codes.size(); ++face)
        if (result.codes[face] == static_cast<int>(kind)) faces.push_back(static_cast<int>(face));
    return faces;
}

bool Analyses::thickness() {
    const vekhost::PlacedMesh mesh = vekhost::PlacedMesh::of(session.document());
    vekhost::analyseThickness(session.document(), mesh, vekhost::RayScene(mesh), {});
    return session.document().thickness->index0 >= 0;
}

double Analyses::thinnest() const {
    const veksg::SCThicknessAnalysis& result = *session.document().thickness;
    return result.thicknesses[static_cast<std::size_t>(result.index0)];
}

double Analyses::thickest() const {
    const veksg::SCThicknessAnalysis& result = *session.document().thickness;
    return result.thicknesses[static_cast<std::size_t>(result.index1)];
}

int Analyses::thinnestFace() const {
    return session.document().thickness->index2;
}

void Analyses::select(const std::vector<int>& faces) {
    session.selection().clear();
    session.selection().add(faceKeys, faces);
    session.selectionChanged();
}

} // namespace vekview
