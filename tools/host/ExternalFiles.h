#pragma once

#include <string>
#include <vector>

#include "DocumentInfo.h"

// The files a document reads besides the one named, as `SCExtFile` keeps them:
// - `files[k]`: `path` absolute, `id` its key k;
// - `names[k]`: its role (`roles` in DocumentInfo.h);
// - `flags[k]`: 1 when the file was there to read, 0 when the document names it and it is
//   missing (a warning, not a failure);
// - `fileIndices[m]`, keyed by mesh (key space 6): the files the mesh's material draws on
//   (its textures);
// - `deleteFilesOnDestroy` stays false: the tools write no temporary files, and every listed
//   file belongs to the user.
namespace vekhost {

/// The role a file plays by its extension (given with its dot, any case).
std::wstring roleOfExtension(const std::string& extension);

/// Where a file named by a file in `directory` is: the name as written (backslashes taken as
/// separators, relative names from `directory`), else its last component in `directory`;
/// each also with its letters in another case. Sets `found`; when nothing is there, the path
/// as written.
std::wstring resolveReference(const std::string& directory, const std::string& reference,
                              bool& found);

/// Appends `files` to the component, in order, from key `extFiles.files.size()` on.
void writeExternalFiles(veksg::SCExtFile& extFiles, const std::vector<ExternalFile>& files);

/// One line per listed file that is missing, by its flag or on disk now:
/// "missing texture: PATH".
std::vector<std::string> missingFileWarnings(const Document& document);

} // namespace vekhost
