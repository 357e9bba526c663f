// Faults of the layer, and its texts for errors.
#include <gtest/gtest.h>
#include <windows.h>

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

TEST(ErrorText, IsThereForCodesThatWindowsHas) {
    char text[100] = {};
    EXPECT_EQ(::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 126, 0, text, sizeof text, nullptr), 12U);
    EXPECT_STREQ(text, "Error 126.\r\n");
    EXPECT_EQ(::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 0x2FFFFFFF, 0, text, sizeof text, nullptr), 0U);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_MR_MID_NOT_FOUND});
}

}  // namespace
