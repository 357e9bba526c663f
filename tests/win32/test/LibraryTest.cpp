// Loading, finding and freeing libraries.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

constexpr char sample[] = "win32_sample.dll";

std::string ProgramFolder() {
    char path[MAX_PATH] = {};
    EXPECT_NE(::GetModuleFileNameA(nullptr, path, MAX_PATH), 0U);
    return std::filesystem::path(path).parent_path().string();
}

// The error with which a library is not loaded.
DWORD LoadError(const std::string& path) {
    ::SetLastError(0);
    const HMODULE library = ::LoadLibraryA(path.c_str());
    if (library != nullptr) {
        ADD_FAILURE() << path << " is loaded";
        ::FreeLibrary(library);
    }
    return ::GetLastError();
}

class Library : public testing::Test {
protected:
    ~Library() override { EXPECT_EQ(::GetModuleHandleA(sample), nullptr); }
};

TEST_F(Library, IsLoadedByNameFromTheProgramsFolder) {
    const HMODULE loaded = ::LoadLibraryA("win32_sample");
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(::GetModuleHandleA("Win32_Sample.DLL"), loaded);
    EXPECT_EQ(::GetModuleHandleW(L"win32_sample.dll"), loaded);
    EXPECT_TRUE(::FreeLibrary(loaded));
}

TEST_F(Library, IsLoadedByPathWithEitherSlash) {
    const std::string path = ProgramFolder() + "/" + sample;
    std::string backwards = path;
    std::replace(backwards.begin(), backwards.end(), '/', '\\');
    const HMODULE first = ::LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    const HMODULE second = ::LoadLibraryExA(backwards.c_str(), nullptr, 0);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first, second);
    char name[MAX_PATH] = {};
    EXPECT_EQ(::GetModuleFileNameA(first, name, MAX_PATH), path.size());
    EXPECT_EQ(std::filesystem::path(name), std::filesystem::path(path));
    EXPECT_EQ(::GetModuleHandleA(backwards.c_str()), first);
    EXPECT_EQ(::GetModuleHandleA("/elsewhere/win32_sample.dll"), nullptr);
    EXPECT_TRUE(::FreeLibrary(first));
    EXPECT_EQ(::GetModuleHandleA(sample), first);
    EXPECT_TRUE(::FreeLibrary(first));
    EXPECT_FALSE(::FreeLibrary(first));
}

TEST_F(Library, ThatCannotBeLoadedSaysWhy) {
    EXPECT_EQ(LoadError("nothing.dll"), DWORD{ERROR_MOD_NOT_FOUND});
    EXPECT_EQ(LoadError("C:\\nowhere\\nothing.dll"), DWORD{ERROR_MOD_NOT_FOUND});
    EXPECT_EQ(LoadError(ProgramFolder()), DWORD{ERROR_MOD_NOT_FOUND});
    EXPECT_EQ(LoadError("win32_dependent.dll"), DWORD{ERROR_MOD_NOT_FOUND});
    const std::string text = testing::TempDir() + "text-" + std::to_string(::GetCurrentProcessId());
    std::ofstream(text) << "text";
    EXPECT_EQ(LoadError(text + "."), DWORD{ERROR_BAD_EXE_FORMAT});
    std::filesystem::remove(text);
}

TEST_F(Library, GivesItsOwnExportsAlone) {
    const HMODULE library = ::LoadLibraryA(sample);
    ASSERT_NE(library, nullptr);
    const FARPROC address = ::GetProcAddress(library, "SampleAnswer");
    ASSERT_NE(address, nullptr);
    const auto answer = reinterpret_cast<int (*)()>(reinterpret_cast<void*>(address));
    EXPECT_EQ(answer(), 42);
    for (const char* other : {"sampleanswer", "CloseHandle", "malloc"}) {
        ::SetLastError(0);
        EXPECT_EQ(::GetProcAddress(library, other), nullptr) << other;
        EXPECT_EQ(::GetLastError(), DWORD{ERROR_PROC_NOT_FOUND});
    }
    ::FreeLibrary(library);
}

TEST_F(Library, IsHeldByAnAddressOfItsCode) {
    const HMODULE library = ::LoadLibraryA(sample);
    const auto address = reinterpret_cast<LPCSTR>(::GetProcAddress(library, "SampleAnswer"));
    HMODULE held = nullptr;
    EXPECT_TRUE(::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, address, &held));
    EXPECT_EQ(held, library);
    ::FreeLibrary(library);
    EXPECT_EQ(::GetModuleHandleA(sample), library);
    HMODULE looked = nullptr;
    EXPECT_TRUE(::GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, address, &looked));
    EXPECT_EQ(looked, library);
    ::FreeLibrary(held);
}

[[noreturn]] void PinTheSample() {
    const HMODULE library = ::LoadLibraryA(sample);
    const auto address = reinterpret_cast<LPCSTR>(::GetProcAddress(library, "SampleAnswer"));
    HMODULE pinned = nullptr;
    const BOOL isPinned =
        ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN, address, &pinned);
    ::FreeLibrary(library);
    const bool isThere = ::GetModuleHandleA(sample) == library;
    std::exit(isPinned != FALSE && pinned == library && isThere ? 42 : 1);
}

TEST_F(Library, ThatIsPinnedStays) {
    EXPECT_EXIT(PinTheSample(), testing::ExitedWithCode(42), "");
}

TEST_F(Library, OfTheProgramIsFoundByItsAddressAndWithoutAName) {
    HMODULE program = nullptr;
    EXPECT_TRUE(::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, reinterpret_cast<LPCSTR>(&ProgramFolder),
                                     &program));
    EXPECT_EQ(program, ::GetModuleHandleA(nullptr));
    EXPECT_EQ(program, ::GetModuleHandleW(nullptr));
    EXPECT_TRUE(::FreeLibrary(program));
    EXPECT_FALSE(::GetModuleHandleExA(0, "nothing.dll", &program));
    EXPECT_EQ(program, nullptr);
}

TEST_F(Library, HasAPathThatIsCutOffWhereTheRoomEnds) {
    wchar_t whole[MAX_PATH] = {};
    EXPECT_GT(::GetModuleFileNameW(nullptr, whole, MAX_PATH), 4U);
    EXPECT_EQ(std::filesystem::path(whole).parent_path(), std::filesystem::path(ProgramFolder()));
    wchar_t cut[5] = {};
    EXPECT_EQ(::GetModuleFileNameW(nullptr, cut, 5), 5U);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(std::wstring(cut, 4), std::wstring(whole, 4));
    ::SetLastError(0);
    EXPECT_EQ(::GetModuleFileNameW(nullptr, cut, 0), 0U);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
}

}  // namespace
