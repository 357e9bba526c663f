#pragma once

#include <windows.h>

#include <atomic>

#include "base/HeldLocks.h"

// A critical section; meets the standard's Lockable as far as std::lock_guard needs it. The owning thread may enter it
// again.
class CriticalSection {
public:
    CriticalSection() noexcept { ::InitializeCriticalSectionAndSpinCount(&section, turnsBeforeSleep); }
    ~CriticalSection() { ::DeleteCriticalSection(&section); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void lock() noexcept {
        ::EnterCriticalSection(&section);
        NoteLockTaken();
    }
    void unlock() noexcept {
        NoteLockLeft();
        ::LeaveCriticalSection(&section);
    }

private:
    // An owner has it for less time than a thread takes to fall asleep and to wake.
    static constexpr DWORD turnsBeforeSleep = 1000;

    CRITICAL_SECTION section;
};

// A critical section paired with an owner-thread word: the id of the thread inside, 0 when it is free.
class OwnerLock {
public:
    void lock() noexcept {
        section.lock();
        ownerThreadId.store(::GetCurrentThreadId(), std::memory_order_relaxed);
    }

    void unlock() noexcept {
        ownerThreadId.store(0, std::memory_order_relaxed);
        section.unlock();
    }

    DWORD OwnerThreadId() const noexcept { return ownerThreadId.load(std::memory_order_relaxed); }

private:
    std::atomic<DWORD> ownerThreadId = 0;
    CriticalSection section;
};
