// Libraries read as files, whole and broken.
#include "tool/pe/PeFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "support/LogFile.h"
#include "tool/doctor/FileChange.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using tool::PeFile;

namespace {

std::filesystem::path Bridge() {
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    return std::filesystem::path(program).parent_path() / "VsMsgbus.dll";
}

std::vector<std::string> LibrariesOf(const PeFile& file) {
    std::vector<std::string> names;
    for (const tool::PeImport& import : file.Imports()) {
        names.push_back(import.library);
    }
    return names;
}

TEST(PeFile, ReadsALibrary) {
    const PeFile file(Bridge());
    EXPECT_TRUE(file.IsThere());
    EXPECT_TRUE(file.IsImage());
    EXPECT_TRUE(file.IsLibrary());
    EXPECT_EQ(file.MachineName(), "x86-64, 64 bits");
    EXPECT_LE(file.ExpectedSize(), file.Size());
    EXPECT_THAT(file.Exports(), Contains("VsMsgbusEntry"));
    EXPECT_THAT(LibrariesOf(file), Contains("LogLib.dll"));
    for (const tool::PeImport& import : file.Imports()) {
        if (import.library == "LogLib.dll") {
            EXPECT_THAT(import.functions, Contains("getLogManager"));
        }
    }
}

TEST(PeFile, TellsWhatIsNoLibrary) {
    const LogFile folder;
    EXPECT_FALSE(PeFile(folder.path).IsThere());
    SetContent(folder.path, "MZ");
    EXPECT_TRUE(PeFile(folder.path).IsThere());
    EXPECT_FALSE(PeFile(folder.path).IsImage());
    wchar_t program[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, program, MAX_PATH);
    EXPECT_FALSE(PeFile(program).IsLibrary());
}

TEST(PeFile, ReadsWhatIsThereOfALibraryThatIsCutOff) {
    const LogFile folder;
    const std::string whole = ContentOf(Bridge());
    const uint64_t needed = PeFile(Bridge()).ExpectedSize();
    for (size_t size = 0; size < needed; size += needed / 100) {
        SetContent(folder.path, whole.substr(0, size));
        const PeFile file(folder.path);
        EXPECT_LE(file.Exports().size(), 100'000U);
        EXPECT_LE(file.Imports().size(), 2'000U);
        EXPECT_TRUE(!file.IsImage() || file.Size() < file.ExpectedSize());
    }
}

TEST(PeFile, ReadsALibraryWhoseBytesAreWrong) {
    const LogFile folder;
    const std::string whole = ContentOf(Bridge());
    // The headers: each byte as high as it can be, one after the other.
    for (size_t place = 0; place < 1024; place += 7) {
        std::string broken = whole.substr(0, 8 * 1024);
        broken[place] = '\xFF';
        SetContent(folder.path, broken);
        const PeFile file(folder.path);
        EXPECT_LE(file.Exports().size(), 100'000U);
        EXPECT_LE(file.Imports().size(), 2'000U);
    }
}

}  // namespace
