#pragma once

#include <windows.h>

#include <memory>

namespace bridge {

struct HandleCloser {
    using pointer = HANDLE;
    void operator()(HANDLE handle) const noexcept { ::CloseHandle(handle); }
};

struct KeyCloser {
    using pointer = HKEY;
    void operator()(HKEY key) const noexcept { ::RegCloseKey(key); }
};

// Closes what the system opened. Null for nothing: INVALID_HANDLE_VALUE must not be put in.
using UniqueHandle = std::unique_ptr<void, HandleCloser>;
using UniqueKey = std::unique_ptr<HKEY, KeyCloser>;

}  // namespace bridge
