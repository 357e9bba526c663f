// The dynamic-library primitives, as modules call them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "VsMsgbus/ny_dl.h"
#include "dispatcher/Neighbours.h"

namespace {

constexpr char systemLibrary[] = "version.dll";

// A library handle that must be written over.
ny_dl_t Garbage() {
    static int garbage = 0;
    return {&garbage};
}

TEST(DlOpen, AnswersOneForANullPathOrLibraryAndWritesNothing) {
    ny_dl_t lib = Garbage();
    EXPECT_EQ(ny_dl_open(nullptr, 0, &lib), 1U);
    EXPECT_EQ(lib.module, Garbage().module);
    EXPECT_EQ(ny_dl_open(systemLibrary, 0, nullptr), 1U);
}

TEST(DlOpen, HandsOutTheModuleOfTheSystem) {
    ny_dl_t lib = Garbage();
    ASSERT_EQ(ny_dl_open(systemLibrary, 0, &lib), 0U);
    EXPECT_EQ(lib.module, ::GetModuleHandleA(systemLibrary));
    ny_dl_close(&lib);
}

TEST(DlOpen, AnswersTheSystemsErrorWithANullHandleForAMissingFile) {
    ny_dl_t lib = Garbage();
    EXPECT_EQ(ny_dl_open("C:\\there-is-no-such-folder\\nothing.dll", 0, &lib), DWORD{ERROR_MOD_NOT_FOUND});
    EXPECT_EQ(lib.module, nullptr);
}

TEST(DlOpen, AnswersTheSystemsErrorForAFileThatIsNoLibrary) {
    const auto file = std::filesystem::temp_directory_path() / ("text-" + std::to_string(::GetCurrentProcessId()));
    std::ofstream(file) << "This is a text, not a library.\n";
    ny_dl_t lib = Garbage();
    EXPECT_EQ(ny_dl_open((file.string() + ".").c_str(), 0, &lib), DWORD{ERROR_BAD_EXE_FORMAT});
    EXPECT_EQ(lib.module, nullptr);
    std::filesystem::remove(file);
}

TEST(DlOpen, LooksForDependenciesInTheLibrarysOwnFolderWhenFlagsAreZero) {
    ny_dl_t lib{};
    ASSERT_EQ(ny_dl_open(LibraryWithANeighbour().c_str(), 0, &lib), 0U);
    EXPECT_NE(::GetModuleHandleA("neighbour.dll"), nullptr);
    ny_dl_close(&lib);
    EXPECT_EQ(::GetModuleHandleA("neighbour.dll"), nullptr);
}

TEST(DlOpen, PassesOtherFlagsOnUnchanged) {
    ny_dl_t lib{};
    EXPECT_EQ(ny_dl_open(LibraryWithANeighbour().c_str(), LOAD_LIBRARY_SEARCH_SYSTEM32, &lib),
              DWORD{ERROR_MOD_NOT_FOUND});
    ASSERT_EQ(ny_dl_open(LibraryWithANeighbour().c_str(), DONT_RESOLVE_DLL_REFERENCES, &lib), 0U);
    EXPECT_EQ(::GetModuleHandleA("neighbour.dll"), nullptr);
    ny_dl_close(&lib);
}

TEST(DlSym, GivesTheAddressThatTheSystemGives) {
    ny_dl_t lib{};
    ASSERT_EQ(ny_dl_open(systemLibrary, 0, &lib), 0U);
    const FARPROC address = ::GetProcAddress(static_cast<HMODULE>(lib.module), "VerQueryValueW");
    ASSERT_NE(address, nullptr);
    EXPECT_EQ(ny_dl_sym(&lib, "VerQueryValueW"), reinterpret_cast<void*>(address));
    ny_dl_close(&lib);
}

TEST(DlSym, GivesNullForANameThatIsNotExportedAndForNullArguments) {
    ny_dl_t lib{};
    ASSERT_EQ(ny_dl_open(systemLibrary, 0, &lib), 0U);
    EXPECT_EQ(ny_dl_sym(&lib, "verqueryvaluew"), nullptr);
    EXPECT_EQ(ny_dl_sym(&lib, nullptr), nullptr);
    EXPECT_EQ(ny_dl_sym(nullptr, "VerQueryValueW"), nullptr);
    ny_dl_close(&lib);
}

TEST(DlSym, GivesNullForAClosedLibraryAlsoForANameOfTheProgramItself) {
    ny_dl_t lib{};
    EXPECT_EQ(ny_dl_sym(&lib, "VerQueryValueW"), nullptr);
}

TEST(DlClose, UnloadsTheLibraryAndSetsTheHandleToNull) {
    ny_dl_t lib{};
    ASSERT_EQ(ny_dl_open(LibraryWithANeighbour().c_str(), 0, &lib), 0U);
    ny_dl_close(&lib);
    EXPECT_EQ(lib.module, nullptr);
    EXPECT_EQ(::GetModuleHandleA("needs_neighbour.dll"), nullptr);
}

TEST(DlClose, LeavesNullAndClosedLibrariesAlone) {
    ny_dl_close(nullptr);
    ny_dl_t held{};
    ny_dl_t lib{};
    ASSERT_EQ(ny_dl_open(LibraryWithANeighbour().c_str(), 0, &held), 0U);
    ASSERT_EQ(ny_dl_open(LibraryWithANeighbour().c_str(), 0, &lib), 0U);
    ny_dl_close(&lib);
    ny_dl_close(&lib);
    EXPECT_EQ(lib.module, nullptr);
    EXPECT_NE(::GetModuleHandleA("needs_neighbour.dll"), nullptr);
    ny_dl_close(&held);
}

std::string SystemText(DWORD error) {
    std::array<char, 1024> text{};
    ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, error, 0, text.data(), DWORD{text.size()}, nullptr);
    return text.data();
}

TEST(DlError, WritesTheSystemsTextForTheLastError) {
    std::array<char, 260> text{};
    ASSERT_FALSE(SystemText(ERROR_MOD_NOT_FOUND).empty());
    ::SetLastError(ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(ny_dl_error(text.data(), 260), 0U);
    EXPECT_EQ(text.data(), SystemText(ERROR_MOD_NOT_FOUND));
}

TEST(DlError, AnswersOneAndWritesNothingBelowTwoHundredAndSixtyBytes) {
    std::array<char, 260> text{};
    text.fill('#');
    ::SetLastError(ERROR_MOD_NOT_FOUND);
    for (const int size : {259, 1, 0, -1}) {
        EXPECT_EQ(ny_dl_error(text.data(), size), 1U) << size;
    }
    EXPECT_THAT(text, testing::Each('#'));
    EXPECT_EQ(ny_dl_error(nullptr, 260), 1U);
}

TEST(DlError, GivesAnEmptyTextForACodeWithoutOne) {
    std::array<char, 260> text{};
    text.fill('#');
    ::SetLastError(0x2FFFFFFF);
    ASSERT_EQ(SystemText(0x2FFFFFFF), "");
    ::SetLastError(0x2FFFFFFF);
    EXPECT_EQ(ny_dl_error(text.data(), 260), 0U);
    EXPECT_STREQ(text.data(), "");
}

}  // namespace
