#include "ExternalFiles.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "Text.h"

namespace vekhost {

namespace fs = std::filesystem;

namespace {
std::string lower(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

bool isFile(const fs::path& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

// The file itself, or the entry of its folder whose name differs only in letter case: files
// made on Windows name their companions without minding case.
bool present(const fs::path& candidate, fs::path& hit) {
    if (isFile(candidate)) {
        hit = candidate;
        return true;
    }
    const std::string name = lower(candidate.filename().string());
    std::error_code error;
    fs::directory_iterator entry(candidate.parent_path(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        if (lower(entry->path().filename().string()) == name && isFile(entry->path())) {
            hit = entry->path();
            return true;
        }
    return false;
}
} // namespace

std::wstring roleOfExtension(const std::string& extension) {
    const std::string e = lower(extension);
    if (e == ".mtl" || e == ".mat" || e == ".material") return roles::materialLibrary;
    if (e == ".bin") return roles::buffer;
    for (const char* image : {".png", ".jpg", ".jpeg", ".tga", ".bmp", ".gif", ".dds", ".tif",
                              ".tiff", ".pcx", ".ktx", ".ktx2", ".hdr", ".psd", ".exr", ".webp"})
        if (e == image) return roles::texture;
    for (const char* model : {".lwo", ".3d", ".uc", ".mdl", ".step", ".stp", ".obj", ".md5anim"})
        if (e == model) return roles::model;
    return roles::data;
}

std::wstring resolveReference(const std::string& directory, const std::string& reference,
                              bool& found) {
    std::string written = reference;
    std::replace(written.begin(), written.end(), '\\', '/');
    // Blender marks names relative to the file with a leading "//".
    if (written.rfind("//", 0) == 0) written.erase(0, 2);
    // A drive letter names a folder of another machine: only the name can be looked for.
    const bool otherMachine = written.size() > 1 && written[1] == ':' &&
                              std::isalpha(static_cast<unsigned char>(written[0]));
    std::error_code error;
    const fs::path folder(directory.empty() ? "." : directory);
    const fs::path absolute = fs::absolute(folder, error);
    const fs::path base = error ? folder : absolute;
    const fs::path named(written);
    const fs::path asWritten = (named.is_absolute() ? named : base / named).lexically_normal();
    fs::path hit;
    found = (!otherMachine && present(asWritten, hit)) || present(base / named.filename(), hit);
    if (found) return hit.lexically_normal().wstring();
    return otherMachine ? wideFromUtf8(written) : asWritten.wstring();
}

void writeExternalFiles(veksg::SCExtFile& extFiles, const std::vector<ExternalFile>& files) {
    for (const ExternalFile& file : files) {
        veksg::ExtFile record;
        record.path = file.path;
        record.id = extFiles.files.size();
        const int key = extFiles.files.insert(record);
        extFiles.names.resize(static_cast<std::size_t>(key), std::wstring());
        extFiles.names.push_back(file.role);
        extFiles.flags.insert(key, static_cast<unsigned char>(file.found ? 1 : 0),
                              static_cast<unsigned char>(0));
    }
}

std::vector<std::string> missingFileWarnings(const Document& document) {
    const veksg::SCExtFile& ext = *document.extFiles;
    std::vector<std::string> warnings;
    for (int k = 0; k < ext.files.size(); ++k) {
        const auto index = static_cast<std::size_t>(k);
        const std::wstring& path = ext.files.getValue(k).path;
        const bool flagged = k < ext.flags.size() && ext.flags.getValue(k) == 0;
        if (!flagged && isFile(fs::path(path))) continue;
        const std::wstring role = index < ext.names.size() ? ext.names[index] : roles::data;
        warnings.push_back("missing " + utf8FromWide(role) + ": " + utf8FromWide(path));
    }
    return warnings;
}

} // namespace vekhost
