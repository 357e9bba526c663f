// Faults of the layer.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "win32_faults.h"

using win32::FailCall;
using win32::FaultMode;

namespace {

class Fault : public testing::Test {
protected:
    ~Fault() override {
        win32::ClearFaults();
        ::CloseHandle(event);
    }

    const HANDLE event = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
};

TEST_F(Fault, IsRefusedForWhatTheLayerDoesNotHaveOrCannotFail) {
    for (const char* name : {"NoSuchFunction", "setevent", "", "GetLastError", "EnterCriticalSection"}) {
        EXPECT_FALSE(FailCall(name, 1, 5)) << name;
        EXPECT_EQ(win32::Uses(name), 0U);
    }
    EXPECT_FALSE(FailCall(nullptr, 1, 5));
    EXPECT_FALSE(FailCall("SetEvent", 0, 5));
    EXPECT_TRUE(::SetEvent(event));
}

TEST_F(Fault, ComesAtTheNthUseOnceAndDoesNothingElse) {
    ASSERT_TRUE(FailCall("SetEvent", 2, 5));
    EXPECT_TRUE(::SetEvent(event));
    ::ResetEvent(event);
    EXPECT_FALSE(::SetEvent(event));
    EXPECT_EQ(::GetLastError(), 5U);
    EXPECT_EQ(::WaitForSingleObject(event, 0), WAIT_TIMEOUT);
    EXPECT_TRUE(::SetEvent(event));
}

TEST_F(Fault, ComesFromThenOnUntilItIsCleared) {
    ASSERT_TRUE(FailCall("SetEvent", 2, 5, FaultMode::FromThenOn));
    EXPECT_TRUE(::SetEvent(event));
    EXPECT_FALSE(::SetEvent(event));
    EXPECT_FALSE(::SetEvent(event));
    win32::ClearFaults();
    EXPECT_TRUE(::SetEvent(event));
}

TEST_F(Fault, OfEachKindOfFunctionIsAnsweredAsWindowsDoes) {
    FailCall("RegOpenKeyExA", 1, 1018);
    HKEY key = nullptr;
    EXPECT_EQ(::RegOpenKeyExA(HKEY_CURRENT_USER, "", 0, KEY_READ, &key), ERROR_KEY_DELETED);
    EXPECT_EQ(key, nullptr);
    FailCall("WaitForMultipleObjects", 1, 6);
    EXPECT_EQ(::WaitForMultipleObjects(1, &event, FALSE, 0), WAIT_FAILED);
    FailCall("CreateThread", 1, 8);
    EXPECT_EQ(::CreateThread(nullptr, 0, nullptr, nullptr, 0, nullptr), nullptr);
    EXPECT_EQ(::GetLastError(), 8U);
    FailCall("LoadLibraryExA", 1, 193);
    EXPECT_EQ(::LoadLibraryExA("win32_sample.dll", nullptr, 0), nullptr);
    EXPECT_EQ(::GetLastError(), 193U);
}

TEST_F(Fault, OfOneFunctionIsNotThatOfAnother) {
    FailCall("SetEvent", 1, 5);
    EXPECT_TRUE(::ResetEvent(event));
    EXPECT_FALSE(::SetEvent(event));
}

TEST_F(Fault, CountsUsesTheFailedOnesIncluded) {
    const size_t before = win32::Uses("SetEvent");
    FailCall("SetEvent", 1, 5);
    ::SetEvent(event);
    ::SetEvent(event);
    EXPECT_EQ(win32::Uses("SetEvent"), before + 2);
}

TEST_F(Fault, OfAFileLeavesItAsItIs) {
    const std::filesystem::path path = testing::TempDir() + "fault-" + std::to_string(::GetCurrentProcessId());
    const auto open = [&path] {
        return ::CreateFileW(path.wstring().c_str(), FILE_APPEND_DATA,
                             FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr);
    };
    FailCall("CreateFileW", 1, 5);
    EXPECT_EQ(open(), INVALID_HANDLE_VALUE);
    EXPECT_EQ(::GetLastError(), 5U);
    EXPECT_FALSE(std::filesystem::exists(path));
    const HANDLE file = open();
    FailCall("WriteFile", 1, ERROR_DISK_FULL);
    DWORD written = 0;
    EXPECT_FALSE(::WriteFile(file, "text", 4, &written, nullptr));
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_DISK_FULL});
    EXPECT_EQ(std::filesystem::file_size(path), 0U);
    ::CloseHandle(file);
    std::filesystem::remove(path);
}

TEST_F(Fault, OfASleepEndsIt) {
    SRWLOCK lock = SRWLOCK_INIT;
    CONDITION_VARIABLE condition = CONDITION_VARIABLE_INIT;
    FailCall("SleepConditionVariableSRW", 1, 8);
    ::AcquireSRWLockExclusive(&lock);
    EXPECT_FALSE(::SleepConditionVariableSRW(&condition, &lock, INFINITE, 0));
    EXPECT_EQ(::GetLastError(), 8U);
    ::ReleaseSRWLockExclusive(&lock);
}

TEST_F(Fault, OfTheRegistrysWideFunctionsIsTheirAnswer) {
    HKEY key = nullptr;
    FailCall("RegOpenKeyExW", 1, 5);
    EXPECT_EQ(::RegOpenKeyExW(HKEY_CURRENT_USER, L"", 0, KEY_READ, &key), ERROR_ACCESS_DENIED);
    EXPECT_EQ(key, nullptr);
    FailCall("RegSetValueExW", 1, 14);
    EXPECT_EQ(::RegSetValueExW(HKEY_CURRENT_USER, L"x", 0, REG_BINARY, nullptr, 0), 14);
    FailCall("RegQueryValueExW", 1, 13);
    EXPECT_EQ(::RegQueryValueExW(HKEY_CURRENT_USER, L"x", nullptr, nullptr, nullptr, nullptr), ERROR_INVALID_DATA);
    EXPECT_EQ(::RegQueryValueExW(HKEY_CURRENT_USER, L"x", nullptr, nullptr, nullptr, nullptr), ERROR_FILE_NOT_FOUND);
}

}  // namespace
