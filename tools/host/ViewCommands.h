#pragma once

namespace vekhost {

/// The command ids under which a saved view's states are filed in `SCStates::typeStates`,
/// one sequence per view key: its camera, then its cut when it has one. Readers of files
/// and viewers that save views keep to them, so that either restores the other's views.
constexpr int viewCameraCommand = 1;
constexpr int viewSectionCommand = 2;

} // namespace vekhost
