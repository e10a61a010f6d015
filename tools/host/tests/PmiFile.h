#pragma once

#include <TDocStd_Document.hxx>

#include <string>

namespace vekhost::test {

/// Writes an AP242 STEP file of one part, a 40 x 20 x 10 block with a through hole of 12
/// around the vertical line at (20, 10), carrying:
///
/// - the length, 40 +0.1 -0.1, between the faces at x = 0 and x = 40;
/// - the hole's diameter, 12 +0.05 -0;
/// - datum A on the bottom face (z = 0);
/// - flatness 0.05 on the top face (z = 10), its text placed at (30, 15, 25);
/// - perpendicularity 0.02 to A on the face at x = 40;
/// - a note over the top face that is graphics only: two strokes named "note".
void writePmiPart(const std::string& path);

/// Adds a saved view "Top" to a loaded document: looking down from (20, 10, 100) with +Y up,
/// showing the first two tolerances and cut by a plane through (0, 0, 5) facing +Z.
void addSavedView(const Handle(TDocStd_Document) & document);

} // namespace vekhost::test
