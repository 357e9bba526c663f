#pragma once

#include "base/ThreadSafety.h"

namespace bridge {

// Holds a lock from construction to destruction.
template <class AnyLock>
class SCOPED_CAPABILITY ScopedLock {
public:
    explicit ScopedLock(AnyLock& lockToHold) noexcept ACQUIRE(lockToHold) : lock(lockToHold) { lock.Lock(); }
    ~ScopedLock() RELEASE() { lock.Unlock(); }
    ScopedLock(const ScopedLock&) = delete;
    ScopedLock& operator=(const ScopedLock&) = delete;

private:
    AnyLock& lock;
};

}  // namespace bridge
