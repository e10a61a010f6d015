#include "TestFiles.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace vekhost::test {

std::string occtFile(const std::string& relative) {
    return std::string(VEKHOST_OCCT_DATA) + "/" + relative;
}

std::string assimpFile(const std::string& relative) {
    return std::string(VEKHOST_ASSIMP_MODELS) + "/" + relative;
}

bool exists(const std::string& path) {
    return std::filesystem::exists(path);
}

namespace {
std::filesystem::path scratchPath() {
    return std::filesystem::temp_directory_path() / ("vekhost-tests-" + std::to_string(getpid()));
}

class ScratchCleanup : public testing::Environment {
public:
    void TearDown() override {
        std::error_code ignored;
        std::filesystem::remove_all(scratchPath(), ignored);
    }
};
const auto* const cleanup = testing::AddGlobalTestEnvironment(new ScratchCleanup);
} // namespace

std::string scratchDirectory() {
    static const std::string directory = [] {
        const auto path = scratchPath();
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
        return path.string();
    }();
    return directory;
}

void copyDamaged(const std::string& source, const std::string& target, long bytes, int flips,
                 long from) {
    std::ifstream in(source, std::ios::binary);
    std::vector<char> data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (bytes >= 0 && static_cast<std::size_t>(bytes) < data.size())
        data.resize(static_cast<std::size_t>(bytes));
    const long span = static_cast<long>(data.size()) - from;
    for (int i = 0; i < flips && span > 0; ++i)
        data[static_cast<std::size_t>(from + span * i / flips)] = '\x7f';
    std::ofstream(target, std::ios::binary)
        .write(data.data(), static_cast<std::streamsize>(data.size()));
}

} // namespace vekhost::test
