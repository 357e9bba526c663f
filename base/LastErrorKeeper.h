#pragma once

#include <windows.h>

namespace bridge {

// Leaves the thread's last-error value as it was: the caller may still have to ask for it.
class LastErrorKeeper {
public:
    LastErrorKeeper() noexcept = default;
    ~LastErrorKeeper() { ::SetLastError(error); }
    LastErrorKeeper(const LastErrorKeeper&) = delete;
    LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

private:
    const DWORD error = ::GetLastError();
};

}  // namespace bridge
