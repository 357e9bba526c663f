// The machine that the layer is: what is the same on every run, and otherwise on other machines.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <string>

#include "RegistryFixture.h"

namespace {

TEST(OwnMachine, HasAUserWhoseProgramsAreOrdinary) {
    HANDLE token = nullptr;
    ASSERT_TRUE(::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token));
    DWORD needed = 0;
    TOKEN_ELEVATION elevation{77};
    EXPECT_TRUE(::GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &needed));
    EXPECT_EQ(elevation.TokenIsElevated, 0U);
    DWORD session = 77;
    EXPECT_TRUE(::GetTokenInformation(token, TokenSessionId, &session, sizeof session, &needed));
    EXPECT_EQ(session, 1U);
    struct {
        TOKEN_MANDATORY_LABEL label;
        BYTE identifier[SECURITY_MAX_SID_SIZE];
    } integrity{};
    EXPECT_TRUE(::GetTokenInformation(token, TokenIntegrityLevel, &integrity, sizeof integrity, &needed));
    EXPECT_EQ(static_cast<const SID*>(integrity.label.Label.Sid)->SubAuthority[0], SECURITY_MANDATORY_MEDIUM_RID);
    ::CloseHandle(token);
}

TEST(OwnMachine, HasTextsOfItsOwnForErrors) {
    char text[100] = {};
    EXPECT_EQ(::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, 126, 0, text, sizeof text, nullptr), 12U);
    EXPECT_STREQ(text, "Error 126.\r\n");
}

TEST(OwnMachine, HasTheCLibrarysEnvironment) {
    EXPECT_TRUE(::SetEnvironmentVariableW(L"WIN32_LAYER_TEST", L"a \u20AC"));
    EXPECT_STREQ(std::getenv("WIN32_LAYER_TEST"), "a \xE2\x82\xAC");
    EXPECT_TRUE(::SetEnvironmentVariableW(L"WIN32_LAYER_TEST", nullptr));
}

TEST(OwnMachine, HasPathsOfOneSpelling) {
    EXPECT_EQ(::LoadLibraryA("WIN32_SAMPLE.dll"), nullptr);
    wchar_t path[MAX_PATH] = {};
    EXPECT_GT(::GetModuleFileNameW(nullptr, path, MAX_PATH), 4U);
    EXPECT_EQ(path[0], L'/');
}

// Wine puts no zero behind it.
TEST(OwnMachine, EndsAPathThatIsCutOffWithAZero) {
    char cut[5] = {1, 1, 1, 1, 1};
    EXPECT_EQ(::GetModuleFileNameA(nullptr, cut, 5), 5U);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(cut[4], 0);
}

// Windows names no error for it, and Wine has another one.
TEST(OwnMachine, OpensNoFileWithANameThatIsTooLong) {
    const std::wstring path(300, L'x');
    EXPECT_EQ(::CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                            nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(::GetLastError(), DWORD{ERROR_FILENAME_EXCED_RANGE});
}

TEST(OwnMachine, HasWideCharactersOfFourBytes) {
    wchar_t wide[2] = {};
    EXPECT_EQ(::MultiByteToWideChar(CP_UTF8, 0, "\xF0\x9F\x98\x80", 4, wide, 2), 1);
    EXPECT_EQ(wide[0], L'\U0001F600');
}

class OwnRegistry : public RegistryFixture {
protected:
    OwnRegistry() { ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr); }
    ~OwnRegistry() override {
        ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, "Software\\Maker");
        ::RegDeleteTreeA(HKEY_LOCAL_MACHINE, "Software\\Wow6432Node\\Maker");
    }
};

// Not on other machines: their registry is not the tests' to write to.
TEST_F(OwnRegistry, KeepsTheViewsOfLocalMachineApart) {
    Touch(HKEY_LOCAL_MACHINE, "Software\\Maker\\Narrow", KEY_WOW64_32KEY);
    Touch(HKEY_LOCAL_MACHINE, "Software\\Maker\\Wide", KEY_WOW64_64KEY);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software\\Maker\\Narrow"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software\\Maker\\Narrow", KEY_WOW64_64KEY), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "SOFTWARE\\maker\\narrow", KEY_WOW64_32KEY), ERROR_SUCCESS);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software\\Wow6432Node\\Maker\\Narrow"), ERROR_SUCCESS);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software\\Wow6432Node\\Maker\\Narrow", KEY_WOW64_32KEY), ERROR_SUCCESS);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software\\Maker\\Wide"), ERROR_SUCCESS);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software\\Maker\\Wide", KEY_WOW64_32KEY), ERROR_FILE_NOT_FOUND);
}

// Wine tells of it only when the key is closed.
TEST_F(OwnRegistry, TellsOfTheDeletionOfAWatchedKey) {
    const HANDLE event = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    const HKEY watched = Create(key, "A\\B");
    EXPECT_EQ(::RegNotifyChangeKeyValue(watched, FALSE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE), ERROR_SUCCESS);
    ::RegDeleteTreeA(key, "A");
    EXPECT_EQ(::WaitForSingleObject(event, 0), WAIT_OBJECT_0);
    EXPECT_EQ(::RegNotifyChangeKeyValue(watched, FALSE, REG_NOTIFY_CHANGE_LAST_SET, event, TRUE), ERROR_KEY_DELETED);
    ::RegCloseKey(watched);
    ::CloseHandle(event);
}

TEST_F(OwnRegistry, HasTextsInUtf8) {
    const std::wstring wide = L"\u20AC \U0001F600";
    ::RegSetValueExW(key, L"Wide", 0, REG_SZ, reinterpret_cast<const BYTE*>(wide.c_str()),
                     static_cast<DWORD>((wide.size() + 1) * sizeof(wchar_t)));
    EXPECT_EQ(Read(key, "Wide"), "\xE2\x82\xAC \xF0\x9F\x98\x80");
    EXPECT_EQ(Write(key, "Narrow", "\xC3\xBC"), ERROR_SUCCESS);
    wchar_t text[3] = {};
    DWORD size = sizeof text;
    EXPECT_EQ(::RegQueryValueExW(key, L"Narrow", nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size),
              ERROR_SUCCESS);
    EXPECT_STREQ(text, L"\u00FC");
}

}  // namespace
