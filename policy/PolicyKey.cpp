#include "policy/PolicyKey.h"

#include <cwchar>
#include <limits>

namespace bridge {

namespace {

constexpr wchar_t keyName[] = LR"(SOFTWARE\Corvane\Endpoint\AV)";
constexpr REGSAM fullAccess = 0xF003F;

using OpenTransacted = LSTATUS WINAPI(HKEY parent, LPCWSTR path, DWORD options, REGSAM access, PHKEY key,
                                      HANDLE transaction, LPVOID reserved);

LSTATUS OpenPlain(HKEY& opened) noexcept {
    return ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, keyName, 0, fullAccess, &opened);
}

// Not every system has the function, so it is looked up where the registry's functions were loaded from.
LSTATUS OpenInTransaction(HANDLE transaction, HKEY& opened) noexcept {
    const HMODULE library = ::GetModuleHandleW(L"Advapi32.dll");
    const auto function = library != nullptr ? ::GetProcAddress(library, "RegOpenKeyTransactedW") : nullptr;
    if (function == nullptr) {
        return ERROR_INVALID_FUNCTION;
    }
    auto* const open = reinterpret_cast<OpenTransacted*>(reinterpret_cast<void*>(function));
    return open(HKEY_LOCAL_MACHINE, keyName, 0, fullAccess, &opened, transaction, nullptr);
}

}  // namespace

LSTATUS PolicyKey::Open() noexcept {
    HKEY opened = nullptr;
    const LSTATUS result = OpenAny(opened);
    if (result == ERROR_SUCCESS) {
        key.reset(opened);
    }
    return result;
}

LSTATUS PolicyKey::OpenAny(HKEY& opened) const noexcept {
    if (transaction == nullptr) {
        return OpenPlain(opened);
    }
    if (transaction->transaction != nullptr) {
        return OpenInTransaction(transaction->transaction, opened);
    }
    return transaction->allowsPlainOpen ? OpenPlain(opened) : LSTATUS{ERROR_INVALID_FUNCTION};
}

LSTATUS PolicyKey::WriteText(const wchar_t* valueName, const wchar_t* text) const noexcept {
    if (text == nullptr) {
        return ERROR_INVALID_DATA;
    }
    const size_t size = (std::wcslen(text) + 1) * sizeof(wchar_t);
    if (size > std::numeric_limits<DWORD>::max()) {
        return ERROR_INVALID_DATA;
    }
    return ::RegSetValueExW(key.get(), valueName, 0, REG_SZ, reinterpret_cast<const BYTE*>(text),
                            static_cast<DWORD>(size));
}

}  // namespace bridge
