#pragma once

#include <windows.h>

#include <atomic>

#include "base/HeldLocks.h"
#include "base/ScopedLock.h"
#include "base/ThreadSafety.h"

namespace bridge {

// A critical section. The thread that has it locked may lock it again.
class CAPABILITY("mutex") CriticalSection {
public:
    CriticalSection() noexcept { ::InitializeCriticalSectionAndSpinCount(&section, turnsBeforeSleep); }
    ~CriticalSection() { ::DeleteCriticalSection(&section); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void Lock() noexcept ACQUIRE() {
        ::EnterCriticalSection(&section);
        NoteLockTaken(this);
    }
    void Unlock() noexcept RELEASE() {
        NoteLockLeft();
        ::LeaveCriticalSection(&section);
    }

private:
    // How often a thread that waits tries again before it sleeps. The bridge's locks are held for less time than a
    // thread takes to fall asleep and to wake.
    static constexpr DWORD turnsBeforeSleep = 1000;

    CRITICAL_SECTION section;
};

// A critical section paired with an owner-thread word: the id of the thread inside, 0 when it is free.
class CAPABILITY("mutex") OwnerLock {
public:
    void Lock() noexcept ACQUIRE() {
        section.Lock();
        ownerThreadId.store(::GetCurrentThreadId(), std::memory_order_relaxed);
    }
    void Unlock() noexcept RELEASE() {
        ownerThreadId.store(0, std::memory_order_relaxed);
        section.Unlock();
    }

    DWORD OwnerThreadId() const noexcept { return ownerThreadId.load(std::memory_order_relaxed); }

private:
    std::atomic<DWORD> ownerThreadId = 0;
    CriticalSection section;
};

}  // namespace bridge
