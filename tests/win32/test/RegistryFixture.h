#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "win32_faults.h"

// A key of the current user's, empty at first and deleted at the end. No registry key is left open.
class RegistryFixture : public testing::Test {
protected:
    RegistryFixture() { key = Create(HKEY_CURRENT_USER, "Software\\Test"); }
    ~RegistryFixture() override {
        ::RegCloseKey(key);
        ::RegDeleteTreeA(HKEY_CURRENT_USER, "Software");
        EXPECT_EQ(win32::OpenRegistryKeys(), 0U);
    }

    static HKEY Create(HKEY parent, const char* path, REGSAM access = KEY_ALL_ACCESS) {
        HKEY created = nullptr;
        EXPECT_EQ(::RegCreateKeyExA(parent, path, 0, nullptr, 0, access, nullptr, &created, nullptr), ERROR_SUCCESS);
        return created;
    }

    // Makes the key when it is not there.
    static void Touch(HKEY parent, const char* path, REGSAM view = 0) {
        ::RegCloseKey(Create(parent, path, KEY_ALL_ACCESS | view));
    }

    static LSTATUS Look(HKEY parent, const char* path, REGSAM view = 0) {
        HKEY opened = nullptr;
        const LSTATUS status = ::RegOpenKeyExA(parent, path, 0, KEY_READ | view, &opened);
        if (status == ERROR_SUCCESS) {
            ::RegCloseKey(opened);
        }
        return status;
    }

    static LSTATUS Write(HKEY target, const char* name, const std::string& text) {
        return ::RegSetValueExA(target, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                static_cast<DWORD>(text.size() + 1));
    }

    // The text, or "error <code>".
    static std::string Read(HKEY source, const char* name) {
        char text[100] = {};
        DWORD size = sizeof text;
        const LSTATUS status = ::RegQueryValueExA(source, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &size);
        return status == ERROR_SUCCESS ? text : "error " + std::to_string(status);
    }

    HKEY key = nullptr;
};
