// The registry's functions for keys.
#include "OpenKey.h"
#include "Text.h"

using win32::ErrorOf;
using win32::Failure;
using win32::KeyNode;
using win32::Missing;
using win32::NodeOf;
using win32::OpenKey;

namespace {

void CheckPlace(const PHKEY result) {
    if (result == nullptr) {
        throw Failure{ERROR_INVALID_PARAMETER};
    }
}

HKEY Open(std::shared_ptr<KeyNode> node, REGSAM access) {
    return static_cast<HKEY>(win32::OpenHandle(std::make_shared<OpenKey>(std::move(node), access)));
}

void OpenExisting(HKEY key, const char* subKey, REGSAM access, PHKEY result) {
    CheckPlace(result);
    const std::lock_guard guard(win32::RegistryLock());
    *result = Open(win32::Walk(NodeOf(key), subKey, access, Missing::Fail), access);
}

}  // namespace

LSTATUS RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, REGSAM access, PHKEY result) {
    win32::Support(options == 0, "options of registry keys");
    return ErrorOf("RegOpenKeyExA", [&] { OpenExisting(key, subKey, access, result); });
}

LSTATUS RegOpenKeyExW(HKEY key, LPCWSTR subKey, DWORD options, REGSAM access, PHKEY result) {
    win32::Support(options == 0, "options of registry keys");
    return ErrorOf("RegOpenKeyExW",
                   [&] { OpenExisting(key, win32::Narrow(subKey != nullptr ? subKey : L"").c_str(), access, result); });
}

LSTATUS RegCreateKeyExA(HKEY key, LPCSTR subKey, DWORD /*reserved*/, LPSTR /*keyClass*/, DWORD options, REGSAM access,
                        LPSECURITY_ATTRIBUTES /*security*/, PHKEY result, LPDWORD disposition) {
    win32::Support(options == 0, "options of registry keys");
    return ErrorOf("RegCreateKeyExA", [&] {
        CheckPlace(result);
        const std::lock_guard guard(win32::RegistryLock());
        bool isNew = false;
        *result = Open(win32::Walk(NodeOf(key), subKey, access, Missing::Make, &isNew), access);
        if (disposition != nullptr) {
            *disposition = isNew ? REG_CREATED_NEW_KEY : REG_OPENED_EXISTING_KEY;
        }
    });
}

LSTATUS RegCloseKey(HKEY key) {
    return ErrorOf("RegCloseKey", [&] {
        if (win32::IsPredefined(key)) {
            return;
        }
        const auto open = win32::OpenKeyOf(key, 0);
        const std::lock_guard guard(win32::RegistryLock());
        if (win32::TakeHandle(key) == nullptr) {
            throw Failure{ERROR_INVALID_HANDLE};
        }
        open->node->EndWatches(*open);
    });
}

LSTATUS RegOverridePredefKey(HKEY predefined, HKEY replacement) {
    return ErrorOf("RegOverridePredefKey", [&] {
        const std::lock_guard guard(win32::RegistryLock());
        win32::Redirect(predefined, replacement != nullptr ? NodeOf(replacement) : nullptr);
    });
}

LSTATUS RegDeleteTreeA(HKEY key, LPCSTR subKey) {
    return ErrorOf("RegDeleteTreeA", [&] {
        const std::lock_guard guard(win32::RegistryLock());
        const bool isForKeyItself = subKey == nullptr || *subKey == '\0';
        const REGSAM access = isForKeyItself ? KEY_ENUMERATE_SUB_KEYS | KEY_QUERY_VALUE | KEY_SET_VALUE : 0;
        const auto node = win32::Walk(NodeOf(key, access), subKey, 0, Missing::Fail);
        node->Clear();
        if (!isForKeyItself) {
            node->Delete();
        }
    });
}

LSTATUS RegDeleteKeyExA(HKEY key, LPCSTR subKey, REGSAM view, DWORD /*reserved*/) {
    return ErrorOf("RegDeleteKeyExA", [&] {
        if (subKey == nullptr) {
            throw Failure{ERROR_INVALID_PARAMETER};
        }
        const std::lock_guard guard(win32::RegistryLock());
        const auto node = win32::Walk(NodeOf(key), subKey, view, Missing::Fail);
        if (node->HasChildren()) {
            throw Failure{ERROR_ACCESS_DENIED};
        }
        node->Delete();
    });
}
