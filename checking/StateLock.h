#pragma once

#include <windows.h>

#include "base/ScopedLock.h"
#include "base/ThreadSafety.h"

namespace checking {

// Guards what the checks remember. Held for looking and noting alone, never while the bridge, the agent or a module is
// called.
class CAPABILITY("mutex") StateLock {
public:
    constexpr StateLock() noexcept = default;
    StateLock(const StateLock&) = delete;
    StateLock& operator=(const StateLock&) = delete;

    void Lock() noexcept ACQUIRE() { ::AcquireSRWLockExclusive(&slimLock); }
    void Unlock() noexcept RELEASE() { ::ReleaseSRWLockExclusive(&slimLock); }
    // False when it stays held: when the process ends, by a thread that was ended.
    bool CanBeHad() noexcept {
        if (::TryAcquireSRWLockExclusive(&slimLock) == FALSE) {
            return false;
        }
        ::ReleaseSRWLockExclusive(&slimLock);
        return true;
    }

private:
    SRWLOCK slimLock = SRWLOCK_INIT;
};

using Guard = bridge::ScopedLock<StateLock>;

}  // namespace checking
