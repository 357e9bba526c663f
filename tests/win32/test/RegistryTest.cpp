// Keys, values and the redirection of the registry.
#include "RegistryFixture.h"

namespace {

using Registry = RegistryFixture;

TEST_F(Registry, GivesBackWhatWasWritten) {
    EXPECT_EQ(Write(key, "Version", "5.7.0"), ERROR_SUCCESS);
    EXPECT_EQ(Read(key, "Version"), "5.7.0");
    EXPECT_EQ(Write(key, "Version", "5.8"), ERROR_SUCCESS);
    EXPECT_EQ(Read(key, "Version"), "5.8");
    EXPECT_EQ(Read(key, nullptr), "error 2");
    EXPECT_EQ(Write(key, nullptr, "unnamed"), ERROR_SUCCESS);
    EXPECT_EQ(Read(key, ""), "unnamed");
}

TEST_F(Registry, ComparesNamesWithoutTheirCaseAndSlashesWithoutTheirNumber) {
    const HKEY made = Create(key, "Sub\\Key");
    Write(made, "Version", "5.7.0");
    ::RegCloseKey(made);
    HKEY same = nullptr;
    ASSERT_EQ(::RegOpenKeyExA(key, "SUB\\\\key\\", 0, KEY_READ, &same), ERROR_SUCCESS);
    EXPECT_EQ(Read(same, "VERSION"), "5.7.0");
    ::RegCloseKey(same);
    EXPECT_EQ(Look(key, "Sub\\Ke"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Look(key, "Sub\\Key1"), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, RefusesAPathThatBeginsWithASlash) {
    Touch(key, "A");
    EXPECT_EQ(Look(key, "\\A"), ERROR_BAD_PATHNAME);
    HKEY made = nullptr;
    EXPECT_EQ(::RegCreateKeyExA(key, "\\A", 0, nullptr, 0, KEY_READ, nullptr, &made, nullptr), ERROR_BAD_PATHNAME);
}

TEST_F(Registry, SaysHowMuchRoomAValueNeeds) {
    Write(key, "Version", "5.7.0");
    BYTE data[6] = {};
    DWORD type = 0;
    DWORD size = 5;
    EXPECT_EQ(::RegQueryValueExA(key, "Version", nullptr, &type, data, &size), ERROR_MORE_DATA);
    EXPECT_EQ(size, 6U);
    EXPECT_EQ(type, DWORD{REG_SZ});
    EXPECT_EQ(::RegQueryValueExA(key, "Version", nullptr, nullptr, data, &size), ERROR_SUCCESS);
    size = 0;
    EXPECT_EQ(::RegQueryValueExA(key, "Version", nullptr, nullptr, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(size, 6U);
}

TEST_F(Registry, TellsANewKeyFromAnOldOne) {
    for (const DWORD expected : {DWORD{REG_CREATED_NEW_KEY}, DWORD{REG_OPENED_EXISTING_KEY}}) {
        HKEY made = nullptr;
        DWORD disposition = 0;
        ::RegCreateKeyExA(key, "A\\B", 0, nullptr, 0, KEY_READ, nullptr, &made, &disposition);
        EXPECT_EQ(disposition, expected);
        ::RegCloseKey(made);
    }
}

TEST_F(Registry, AllowsWhatTheKeyWasOpenedFor) {
    const HKEY readable = Create(key, "A", KEY_READ);
    const HKEY writable = Create(key, "A", KEY_SET_VALUE);
    EXPECT_EQ(Write(readable, "x", "y"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Write(writable, "x", "y"), ERROR_SUCCESS);
    EXPECT_EQ(Read(writable, "x"), "error 5");
    EXPECT_EQ(Read(readable, "x"), "y");
    ::RegCloseKey(readable);
    ::RegCloseKey(writable);
}

TEST_F(Registry, DeletesOnlyKeysThatHaveNoneBelow) {
    Touch(key, "A\\B");
    EXPECT_EQ(::RegDeleteKeyExA(key, "A", 0, 0), ERROR_ACCESS_DENIED);
    EXPECT_EQ(::RegDeleteKeyExA(key, "A\\B", 0, 0), ERROR_SUCCESS);
    EXPECT_EQ(::RegDeleteKeyExA(key, "A", 0, 0), ERROR_SUCCESS);
    EXPECT_EQ(::RegDeleteKeyExA(key, "A", 0, 0), ERROR_FILE_NOT_FOUND);
}

TEST_F(Registry, EmptiesATreeOrDeletesIt) {
    Touch(key, "A\\B\\C");
    const HKEY a = Create(key, "A");
    Write(a, "x", "y");
    EXPECT_EQ(::RegDeleteTreeA(a, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(Look(key, "A\\B"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(Read(a, "x"), "error 2");
    EXPECT_EQ(::RegDeleteTreeA(key, "A"), ERROR_SUCCESS);
    EXPECT_EQ(Look(key, "A"), ERROR_FILE_NOT_FOUND);
    ::RegCloseKey(a);
}

TEST_F(Registry, EmptiesNoTreeThatItMayNotRead) {
    Touch(key, "A\\B");
    const HKEY writable = Create(key, "A", KEY_SET_VALUE);
    EXPECT_EQ(::RegDeleteTreeA(writable, nullptr), ERROR_ACCESS_DENIED);
    EXPECT_EQ(Look(key, "A\\B"), ERROR_SUCCESS);
    ::RegCloseKey(writable);
}

TEST_F(Registry, AnswersThatAnOpenKeyWasDeleted) {
    Touch(key, "A\\B");
    const HKEY b = Create(key, "A\\B");
    ::RegDeleteTreeA(key, "A");
    EXPECT_EQ(Read(b, "x"), "error 1018");
    EXPECT_EQ(Write(b, "x", "y"), ERROR_KEY_DELETED);
    EXPECT_EQ(Look(b, ""), ERROR_KEY_DELETED);
    const HANDLE event = ::CreateEventA(nullptr, TRUE, FALSE, nullptr);
    EXPECT_EQ(::RegNotifyChangeKeyValue(b, TRUE, REG_NOTIFY_CHANGE_NAME, event, TRUE), ERROR_KEY_DELETED);
    ::CloseHandle(event);
    // A new key of that name is another one.
    Touch(key, "A\\B");
    EXPECT_EQ(Read(b, "x"), "error 1018");
    EXPECT_EQ(::RegCloseKey(b), ERROR_SUCCESS);
    EXPECT_EQ(::RegCloseKey(b), ERROR_INVALID_HANDLE);
}

TEST_F(Registry, HasOneViewOfTheCurrentUser) {
    Touch(HKEY_CURRENT_USER, (path + "\\A").c_str(), KEY_WOW64_32KEY);
    EXPECT_EQ(Look(HKEY_CURRENT_USER, (path + "\\A").c_str()), ERROR_SUCCESS);
}

TEST_F(Registry, RedirectsLocalMachineWithBothItsViews) {
    ::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software"), ERROR_SUCCESS);
    ASSERT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, key), ERROR_SUCCESS);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software"), ERROR_FILE_NOT_FOUND);
    Touch(HKEY_LOCAL_MACHINE, "Software\\Maker\\Put", KEY_WOW64_32KEY);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software\\Maker\\Put"), ERROR_SUCCESS);
    EXPECT_EQ(Look(key, "Software\\Maker\\Put"), ERROR_SUCCESS);
    ASSERT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr), ERROR_SUCCESS);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software"), ERROR_SUCCESS);
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software\\Maker\\Put"), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(::RegOverridePredefKey(key, nullptr), ERROR_INVALID_HANDLE);
}

TEST_F(Registry, AnswersForARedirectionToADeletedKey) {
    const HKEY replacement = Create(key, "Replacement");
    ASSERT_EQ(::RegOverridePredefKey(HKEY_LOCAL_MACHINE, replacement), ERROR_SUCCESS);
    ::RegCloseKey(replacement);
    ::RegDeleteTreeA(key, "Replacement");
    EXPECT_EQ(Look(HKEY_LOCAL_MACHINE, "Software"), ERROR_KEY_DELETED);
}

}  // namespace
