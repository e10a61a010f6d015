#include "MeshFiles.h"

#include <assimp/IOStream.hpp>
#include <assimp/material.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>

#include "ExternalFiles.h"
#include "Text.h"

namespace vekhost {

namespace fs = std::filesystem;

namespace {
std::string normalPath(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(fs::path(path), error);
    return (error ? fs::path(path) : absolute).lexically_normal().string();
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// Companions that readers look for by the model's own name in case they exist (MD5's
// animation and camera files, SMD's animation list): not finding them is no fault of the file.
bool isSpeculative(const std::string& path) {
    for (const char* end : {".md5anim", ".md5camera", "_animation.txt"})
        if (endsWith(path, end)) return true;
    return false;
}

// A file's name without the blanks that some readers leave around it.
std::string trimmedName(const std::string& path) {
    const std::string name = fs::path(path).filename().string();
    const auto first = name.find_first_not_of(" \t");
    const auto last = name.find_last_not_of(" \t");
    return first == std::string::npos ? std::string() : name.substr(first, last - first + 1);
}

void setUnits(const aiScene& scene, const std::string& format, SourceInfo& info) {
    // glTF is in metres by definition; Assimp scales Collada files to metres itself.
    if (format == "GLTF" || format == "GLB") info.unit = info.fileUnit = METRE;
    if (format == "DAE") info.unit = METRE;
    // FBX states its unit in centimetres; Assimp leaves the coordinates in it.
    double centimetres = 0;
    float single = 0;
    if (format == "FBX" && scene.mMetaData) {
        if (!scene.mMetaData->Get("UnitScaleFactor", centimetres) &&
            scene.mMetaData->Get("UnitScaleFactor", single))
            centimetres = single;
        info.unit = info.fileUnit = unitOfSize(10.0 * centimetres);
    }
}
} // namespace

Assimp::IOStream* FileLog::Open(const char* file, const char* mode) {
    Assimp::IOStream* stream = DefaultIOSystem::Open(file, mode);
    if (!file) return stream;
    const std::string path = normalPath(file);
    auto known = std::find_if(files.begin(), files.end(),
                              [&path](const Entry& entry) { return entry.path == path; });
    if (known == files.end()) known = files.insert(files.end(), Entry{path, false});
    if (stream && !known->opened) {
        known->opened = true;
        bytes += stream->FileSize();
    }
    return stream;
}

SourceInfo meshSourceInfo(const aiScene& scene, const std::string& path, const std::string& format,
                          const FileLog& log, std::vector<std::vector<int>>& texturesOf) {
    SourceInfo info;
    info.animations = static_cast<int>(scene.mNumAnimations);
    setUnits(scene, format, info);

    const std::string self = normalPath(path);
    std::map<std::wstring, int> known;
    auto add = [&](const ExternalFile& file) {
        const auto [at, added] = known.emplace(file.path, static_cast<int>(info.files.size()));
        if (added) info.files.push_back(file);
        return at->second;
    };
    // Readers look for a file in more than one place: one found under its name anywhere is
    // not missing.
    std::vector<std::string> opened;
    for (const FileLog::Entry& entry : log.entries())
        if (entry.opened) opened.push_back(trimmedName(entry.path));
    for (const FileLog::Entry& entry : log.entries()) {
        if (entry.path == self || isSpeculative(entry.path)) continue;
        if (!entry.opened &&
            std::find(opened.begin(), opened.end(), trimmedName(entry.path)) != opened.end())
            continue;
        add({wideFromUtf8(entry.path), roleOfExtension(fs::path(entry.path).extension().string()),
             entry.opened});
    }

    const std::string directory = fs::path(self).parent_path().string();
    texturesOf.assign(scene.mNumMaterials, {});
    for (unsigned m = 0; m < scene.mNumMaterials; ++m) {
        const aiMaterial& material = *scene.mMaterials[m];
        for (int type = aiTextureType_NONE; type <= AI_TEXTURE_TYPE_MAX; ++type)
            for (unsigned t = 0; t < material.GetTextureCount(aiTextureType(type)); ++t) {
                aiString name;
                if (material.GetTexture(aiTextureType(type), t, &name) != AI_SUCCESS) continue;
                const std::string reference = name.C_Str();
                // "*N" names an embedded texture; Assimp's placeholders start with '$'.
                if (reference.empty() || reference[0] == '*' || reference[0] == '$' ||
                    scene.GetEmbeddedTexture(name.C_Str()))
                    continue;
                ExternalFile texture;
                texture.path = resolveReference(directory, reference, texture.found);
                texture.role = roles::texture;
                const int key = add(texture);
                auto& list = texturesOf[m];
                if (std::find(list.begin(), list.end(), key) == list.end()) list.push_back(key);
            }
    }
    return info;
}

} // namespace vekhost
