// Files that are written at their end.
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

class File : public testing::Test {
protected:
    File() { std::filesystem::create_directories(folder); }
    ~File() override { std::filesystem::remove_all(folder); }

    static HANDLE Open(const std::filesystem::path& place) {
        return ::CreateFileW(place.wstring().c_str(), FILE_APPEND_DATA,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    }

    // The error with which a file is not opened.
    static DWORD OpenError(const std::filesystem::path& place) {
        EXPECT_EQ(Open(place), INVALID_HANDLE_VALUE);
        return ::GetLastError();
    }

    static BOOL Write(HANDLE file, const std::string& text) {
        DWORD written = 0;
        const BOOL isWritten = ::WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
        EXPECT_EQ(written, isWritten ? text.size() : 0U);
        return isWritten;
    }

    std::string Text() const {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const std::filesystem::path folder = testing::TempDir() + "files-" + std::to_string(::GetCurrentProcessId());
    const std::filesystem::path path = folder / "file.log";
};

TEST_F(File, IsMadeOnceAndWrittenAtItsEnd) {
    const HANDLE first = Open(path);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_SUCCESS});
    const HANDLE second = Open(path);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    EXPECT_TRUE(Write(first, "one "));
    EXPECT_TRUE(Write(second, "two "));
    EXPECT_TRUE(Write(first, "three"));
    EXPECT_EQ(Text(), "one two three");
    EXPECT_TRUE(::CloseHandle(first));
    EXPECT_TRUE(::CloseHandle(second));
    EXPECT_FALSE(::CloseHandle(second));
    EXPECT_FALSE(Write(first, "closed"));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

TEST_F(File, HasAPathWithEitherSlash) {
    std::string backwards = path.string();
    std::replace(backwards.begin(), backwards.end(), '/', '\\');
    const HANDLE file = Open(backwards);
    EXPECT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(std::filesystem::exists(path));
    ::CloseHandle(file);
    std::string forwards = path.string();
    std::replace(forwards.begin(), forwards.end(), '\\', '/');
    const HANDLE same = Open(forwards);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
    ::CloseHandle(same);
}

TEST_F(File, ThatCannotBeOpenedSaysWhy) {
    EXPECT_EQ(OpenError(folder / "missing" / "file.log"), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(OpenError(""), DWORD{ERROR_PATH_NOT_FOUND});
    EXPECT_EQ(OpenError(folder), DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(File, IsNoOtherHandle) {
    const HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    EXPECT_FALSE(Write(event, "text"));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    ::CloseHandle(event);
    const HANDLE file = Open(path);
    EXPECT_FALSE(::SetEvent(file));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INVALID_HANDLE});
    ::CloseHandle(file);
}

}  // namespace
