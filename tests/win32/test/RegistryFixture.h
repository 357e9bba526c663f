#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "RegistryRedirect.h"

// A key of the current user's, empty at first and deleted at the end. HKEY_LOCAL_MACHINE is redirected meanwhile.
class RegistryFixture : public testing::Test {
protected:
    RegistryFixture() { key = Create(HKEY_CURRENT_USER, path.c_str()); }
    ~RegistryFixture() override { ::RegCloseKey(key); }

    static HKEY Create(HKEY parent, const char* subKey, REGSAM access = KEY_ALL_ACCESS) {
        HKEY created = nullptr;
        EXPECT_EQ(::RegCreateKeyExA(parent, subKey, 0, nullptr, 0, access, nullptr, &created, nullptr), ERROR_SUCCESS);
        return created;
    }

    // Makes the key when it is not there.
    static void Touch(HKEY parent, const char* subKey, REGSAM view = 0) {
        ::RegCloseKey(Create(parent, subKey, KEY_ALL_ACCESS | view));
    }

    static LSTATUS Look(HKEY parent, const char* subKey, REGSAM view = 0) {
        HKEY opened = nullptr;
        const LSTATUS status = ::RegOpenKeyExA(parent, subKey, 0, KEY_READ | view, &opened);
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

    // Where the key is below HKEY_CURRENT_USER.
    const simulator::RegistryRedirect redirect;
    const std::string path = redirect.Path() + "\\Test";
    HKEY key = nullptr;
};
