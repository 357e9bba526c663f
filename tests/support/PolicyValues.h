#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <type_traits>

#include "Registry.h"

// The registry key with the names of policies, as the endpoint product's installer makes it. Where HKEY_LOCAL_MACHINE
// is redirected, as in every AgentTest.
class PolicyValues {
public:
    static constexpr char path[] = R"(SOFTWARE\Corvane\Endpoint\AV)";
    static constexpr wchar_t none[] = L"(none)";

    static void MakeKey() { simulator::RegistryKey(HKEY_LOCAL_MACHINE, path, KEY_READ); }
    static void DeleteKey() { simulator::DeleteRegistryTree(HKEY_LOCAL_MACHINE, path, 0); }
    static bool HasKey() { return Open() != nullptr; }

    // The value's text; `none` when the key or the value is not there. It is text, and ends with one zero, its last.
    static std::wstring Read(const wchar_t* name) {
        const auto key = Open();
        DWORD type = 0;
        DWORD size = 0;
        if (key == nullptr || ::RegQueryValueExW(key.get(), name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
            return none;
        }
        EXPECT_EQ(type, REG_SZ);
        std::wstring text(size / sizeof(wchar_t), L'\0');
        EXPECT_EQ(::RegQueryValueExW(key.get(), name, nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &size),
                  ERROR_SUCCESS);
        EXPECT_EQ(text.find(L'\0'), text.size() - 1);
        return text.substr(0, text.find(L'\0'));
    }

private:
    struct Close {
        void operator()(HKEY key) const { ::RegCloseKey(key); }
    };

    static std::unique_ptr<std::remove_pointer_t<HKEY>, Close> Open() {
        HKEY key = nullptr;
        const LSTATUS status = ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key);
        return std::unique_ptr<std::remove_pointer_t<HKEY>, Close>(status == ERROR_SUCCESS ? key : nullptr);
    }
};
