#pragma once

#include <assimp/DefaultIOSystem.h>
#include <assimp/scene.h>

#include <cstdint>
#include <string>
#include <vector>

#include "DocumentInfo.h"

namespace vekhost {

/// Assimp's file access, noting every file a reader opens or fails to open.
class FileLog : public Assimp::DefaultIOSystem {
public:
    struct Entry {
        /// Absolute, without "." and "..".
        std::string path;
        bool opened = false;
    };

    Assimp::IOStream* Open(const char* file, const char* mode = "rb") override;
    /// Each file once, in the order first asked for.
    const std::vector<Entry>& entries() const { return files; }
    /// Bytes in the files opened, each counted once.
    std::uint64_t bytesOpened() const { return bytes; }

private:
    std::vector<Entry> files;
    std::uint64_t bytes = 0;
};

/// What a mesh file tells about itself: units, animations, and the files it reads besides
/// itself: those Assimp opened or looked for in vain (but for the companions some readers
/// only look for in case they exist) and the textures its materials name that are not
/// embedded. `texturesOf[m]` receives the positions in `files` of material m's textures.
SourceInfo meshSourceInfo(const aiScene& scene, const std::string& path, const std::string& format,
                          const FileLog& log, std::vector<std::vector<int>>& texturesOf);

} // namespace vekhost
