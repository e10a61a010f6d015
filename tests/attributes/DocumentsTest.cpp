#include <filesystem>
#include <fstream>
#include <random>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

TEST(Documents, SetFileCopiesAndNullEmpties) {
    veksg::SCInfo info;
    info.setFile(L"C:\\models\\pump.step");
    EXPECT_STREQ(info.file(), L"C:\\models\\pump.step");
    info.setFile(nullptr);
    EXPECT_STREQ(info.file(), L"");
}

TEST(Documents, ExtFileCleanupEmptiesOnlyTheFlags) {
    veksg::SCExtFile files;
    files.files.insert({L"x", 1});
    files.fileIds.insert(4);
    files.fileIndices.insert({9});
    files.flags.resizeToFitKey(9, 1);
    files.names.push_back(L"n");
    files.cleanup();
    EXPECT_EQ(files.flags.size(), 0);
    EXPECT_EQ(files.files.size() + files.fileIds.size() + files.fileIndices.size(), 3);
    EXPECT_EQ(files.names.size(), 1u);
}

// Real files in a private temporary folder, named through wide strings as a host would.
class ExtFileDeletion : public ::testing::Test {
protected:
    void SetUp() override {
        folder = std::filesystem::temp_directory_path() /
                 ("veksg-extfile-" + std::to_string(std::random_device()()));
        std::filesystem::create_directories(folder);
        const std::string narrow = folder.string();
        for (char c : narrow)
            ASSERT_GE(c, 0) << "the temporary folder must have an ASCII path";
        wideFolder.assign(narrow.begin(), narrow.end());
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    // `utf8` is the name on disk; `wide` the same name as the library receives it.
    std::wstring create(const std::string& utf8, const std::wstring& wide) {
        std::ofstream(folder / utf8) << "data";
        EXPECT_TRUE(std::filesystem::exists(folder / utf8));
        return wideFolder + L"/" + wide;
    }
    bool exists(const std::string& utf8) const { return std::filesystem::exists(folder / utf8); }

    static void list(veksg::SCExtFile& files, std::initializer_list<std::wstring> paths) {
        for (const std::wstring& path : paths)
            files.files.insert({path, 0});
    }

    std::filesystem::path folder;
    std::wstring wideFolder;
};

// "\xC3\xBC" and "\xE6\x95\xB0\xE6\x8D\xAE" are UTF-8 for the wide names below.
const std::string nonAsciiName = "gr\xC3\xBC\xC3\x9F-\xE6\x95\xB0\xE6\x8D\xAE.bin";
const std::wstring nonAsciiWide = L"gr\u00fc\u00df-\u6570\u636e.bin";

// Surrogates and values past U+10FFFF are no characters; each stands for U+FFFD on disk.
const std::string replacedName = "bad-\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD.bin";
const std::wstring replacedWide =
    std::wstring(L"bad-") + wchar_t(0xD800) + wchar_t(0xDFFF) + wchar_t(0x110000) + L".bin";

TEST_F(ExtFileDeletion, DeletesEveryListedFileWhateverFails) {
    std::wstring seen;
    {
        veksg::SCExtFile files;
        list(files, {create("first.bin", L"first.bin"), wideFolder + L"/never-there.bin", L"",
                     create(nonAsciiName, nonAsciiWide), wideFolder + L"/" + nonAsciiWide,
                     create(replacedName, replacedWide), create("last.bin", L"last.bin")});
        files.deleteFilesOnDestroy = true;
        // The host's object goes first, while every table is still there to read.
        files.names.push_back(L"a name long enough to live on the heap");
        files.sharedObject =
            std::shared_ptr<void>(nullptr, [&files, &seen](void*) { seen = files.names.at(0); });
    }
    EXPECT_EQ(seen, L"a name long enough to live on the heap");
    EXPECT_FALSE(exists("first.bin"));
    EXPECT_FALSE(exists(nonAsciiName));
    EXPECT_FALSE(exists(replacedName));
    EXPECT_FALSE(exists("last.bin"));
}

TEST_F(ExtFileDeletion, OnlyComponentsAskedToDeleteTouchTheDiskCopiesIncluded) {
    veksg::SCExtFile original;
    list(original, {create("shared.bin", L"shared.bin")});
    original.deleteFilesOnDestroy = true;
    {
        veksg::SCExtFile untouched;
        list(untouched, {create("kept.bin", L"kept.bin"), create(nonAsciiName, nonAsciiWide)});
        untouched.cleanup();
        const veksg::SCExtFile copy(original);
    }
    EXPECT_TRUE(exists("kept.bin"));
    EXPECT_TRUE(exists(nonAsciiName));
    EXPECT_FALSE(exists("shared.bin"));
    original.deleteFilesOnDestroy = false;
}

} // namespace
