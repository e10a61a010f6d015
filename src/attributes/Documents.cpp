#include "veksg/Documents.h"

#include <cstdint>

#if defined(_WIN32)
#include <windows.h>
#else
#include <filesystem>
#include <system_error>
#endif

namespace veksg {

namespace {
#if defined(_WIN32)
void deleteFile(const std::wstring& path) {
    ::DeleteFileW(path.c_str());
}
#else
// File names are bytes here and wide names reach them as UTF-8. The standard wide-to-path
// conversion would follow the process locale instead, and throws for any non-ASCII name
// under the default "C" locale.
void appendUtf8(std::string& out, std::uint32_t c) {
    const bool surrogate = c >= 0xD800u && c <= 0xDFFFu;
    if (c > 0x10FFFFu || surrogate) c = 0xFFFDu;
    if (c < 0x80u) {
        out += static_cast<char>(c);
        return;
    }
    int tail = c < 0x800u ? 1 : c < 0x10000u ? 2 : 3;
    const unsigned lead = tail == 1 ? 0xC0u : tail == 2 ? 0xE0u : 0xF0u;
    out += static_cast<char>(lead | (c >> (6 * tail)));
    while (tail-- > 0)
        out += static_cast<char>(0x80u | ((c >> (6 * tail)) & 0x3Fu));
}

void deleteFile(const std::wstring& path) {
    std::string bytes;
    bytes.reserve(path.size());
    for (wchar_t c : path)
        appendUtf8(bytes, static_cast<std::uint32_t>(c));
    std::error_code ignored;
    std::filesystem::remove(std::filesystem::path(bytes), ignored);
}
#endif
} // namespace

SCInfo::~SCInfo() = default;

short SCInfo::type() const {
    return Schema::type();
}

void SCInfo::setFile(const wchar_t* path) {
    if (path == nullptr)
        filePath.clear();
    else
        filePath = path;
}

SCLayer::~SCLayer() = default;

short SCLayer::type() const {
    return Schema::type();
}

SCExtFile::~SCExtFile() {
    if (deleteFilesOnDestroy)
        for (const ExtFile& file : files)
            deleteFile(file.path);
    // The client object goes before the tables, whatever the members' own order says.
    sharedObject.reset();
}

short SCExtFile::type() const {
    return Schema::type();
}

void SCExtFile::cleanup() {
    flags.clear();
}

SCAnimation::~SCAnimation() = default;

short SCAnimation::type() const {
    return Schema::type();
}

} // namespace veksg
