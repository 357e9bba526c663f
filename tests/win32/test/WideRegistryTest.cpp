// The registry's functions for wide text, and how they share values with the others.
#include <string>

#include "RegistryFixture.h"

namespace {

class WideRegistry : public RegistryFixture {
protected:
    static LSTATUS WriteWide(HKEY target, const wchar_t* name, const std::wstring& text) {
        return ::RegSetValueExW(target, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
    }

    // The text with its terminating zero, or "error <code>".
    static std::wstring ReadWide(HKEY source, const wchar_t* name) {
        wchar_t text[100] = {};
        DWORD size = sizeof text;
        const LSTATUS status = ::RegQueryValueExW(source, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size);
        return status == ERROR_SUCCESS ? std::wstring(text, size / sizeof(wchar_t))
                                       : L"error " + std::to_wstring(status);
    }

    static std::wstring WithZero(const std::wstring& text) { return {text.c_str(), text.size() + 1}; }
};

TEST_F(WideRegistry, OpensTheSameKeys) {
    Touch(key, "Sub\\Key");
    HKEY opened = nullptr;
    EXPECT_EQ(::RegOpenKeyExW(key, L"SUB\\key", 0, KEY_READ, &opened), ERROR_SUCCESS);
    EXPECT_EQ(::RegCloseKey(opened), ERROR_SUCCESS);
    EXPECT_EQ(::RegOpenKeyExW(key, L"Other", 0, KEY_READ, &opened), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(::RegOpenKeyExW(key, L"Sub", 0, KEY_READ, nullptr), ERROR_INVALID_PARAMETER);
    EXPECT_EQ(::RegOpenKeyExW(key, nullptr, 0, KEY_READ, &opened), ERROR_SUCCESS);
    EXPECT_EQ(::RegCloseKey(opened), ERROR_SUCCESS);
}

TEST_F(WideRegistry, SharesTextsWithTheOtherFunctions) {
    EXPECT_EQ(WriteWide(key, L"Wide", L"\u20AC \U0001F600"), ERROR_SUCCESS);
    EXPECT_EQ(ReadWide(key, L"wide"), WithZero(L"\u20AC \U0001F600"));
    EXPECT_EQ(WriteWide(key, L"Ascii", L"abc"), ERROR_SUCCESS);
    EXPECT_EQ(Read(key, "Ascii"), "abc");
    EXPECT_EQ(Write(key, "Narrow", "def"), ERROR_SUCCESS);
    EXPECT_EQ(ReadWide(key, L"Narrow"), WithZero(L"def"));
    EXPECT_EQ(WriteWide(key, nullptr, L""), ERROR_SUCCESS);
    EXPECT_EQ(ReadWide(key, L""), WithZero(L""));
    EXPECT_EQ(ReadWide(key, L"Missing"), L"error 2");
}

TEST_F(WideRegistry, LeavesWhatIsNoText) {
    const BYTE bytes[] = {0xFF, 0x00, 0x80};
    EXPECT_EQ(::RegSetValueExW(key, L"Bytes", 0, REG_BINARY, bytes, sizeof bytes), ERROR_SUCCESS);
    BYTE read[3] = {};
    DWORD size = sizeof read;
    DWORD type = 0;
    EXPECT_EQ(::RegQueryValueExW(key, L"Bytes", nullptr, &type, read, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, DWORD{REG_BINARY});
    EXPECT_EQ(size, 3U);
    EXPECT_EQ(read[0], 0xFF);
    EXPECT_EQ(read[2], 0x80);
}

TEST_F(WideRegistry, SaysHowMuchRoomATextNeeds) {
    WriteWide(key, L"Value", L"ab");
    wchar_t text[3] = {};
    DWORD size = sizeof text - 1;
    EXPECT_EQ(::RegQueryValueExW(key, L"Value", nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size),
              ERROR_MORE_DATA);
    EXPECT_EQ(size, sizeof text);
}

TEST_F(WideRegistry, AllowsWhatTheKeyWasOpenedFor) {
    const HKEY readable = Create(key, "A", KEY_READ);
    EXPECT_EQ(WriteWide(readable, L"x", L"y"), ERROR_ACCESS_DENIED);
    ::RegCloseKey(readable);
}

}  // namespace
