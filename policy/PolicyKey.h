#pragma once

#include <windows.h>

#include <cstdint>

#include "base/UniqueHandle.h"

namespace bridge {

// How a key is opened as part of a transaction.
struct PolicyTransaction {
    HANDLE transaction;    // of the transaction manager's, not owned; null for none
    bool allowsPlainOpen;  // when there is none
};

// The registry key of the endpoint product's policy names, HKEY_LOCAL_MACHINE\SOFTWARE\Corvane\Endpoint\AV. The bridge
// never makes it, because only the product reads it. For one thread at a time.
class PolicyKey {
public:
    // Without a descriptor the key is opened outside of any transaction. The descriptor, not owned, outlives this
    // object.
    explicit PolicyKey(const PolicyTransaction* descriptor = nullptr) noexcept : transaction(descriptor) {}

    // Opens the key with full access. On success it takes the place of the key that was held, which is closed;
    // otherwise that one stays. Returns the system's error code, ERROR_SUCCESS when it went well;
    // ERROR_INVALID_FUNCTION when the system has no transactions, or the descriptor has none and does not allow to do
    // without.
    LSTATUS Open() noexcept;

    // Writes a text, its terminating zero included, as the value of that name. Returns the system's error code;
    // ERROR_INVALID_DATA when the text is null or longer than a value can be.
    LSTATUS WriteText(const wchar_t* valueName, const wchar_t* text) const noexcept;

    bool IsOpen() const noexcept { return key != nullptr; }
    void Close() noexcept { key.reset(); }

private:
    LSTATUS OpenAny(HKEY& opened) const noexcept;

    UniqueKey key;
    [[maybe_unused]] uintptr_t reserved = 0;
    const PolicyTransaction* transaction;
};

}  // namespace bridge
