// An object that threads can wait for: an event, or a thread's end.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "Handles.h"

namespace win32 {

// One thread's wait. Belongs to that wait alone, so that waits of others order nothing.
class Waiter {
public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;  // none for ever

    void Wake();
    // False when the deadline has passed.
    bool Wait(const Deadline& deadline);

private:
    std::mutex mutex;
    std::condition_variable woken;
    bool isWoken = false;
};

class Waitable : public Object {
public:
    // With `staysSignalled` false each signal ends one wait.
    Waitable(bool staysSignalled, bool isSignalledNow) : stays(staysSignalled), isSignalled(isSignalledNow) {}

    void Signal();
    void Reset();

    // Whether it is signalled: that ends the wait. If it is not, the waiter is woken by the next signal until it is
    // dismissed.
    bool EndsWaitOf(Waiter& waiter);
    void Dismiss(Waiter& waiter);

private:
    // The calling thread's wait has ended; nobody else's does at that time.
    virtual void Taken() {}

    std::mutex mutex;
    const bool stays;
    bool isSignalled;
    std::vector<Waiter*> waiters;
};

class Event final : public Waitable {
    using Waitable::Waitable;
};

// Signalled while no thread owns it.
class Mutex final : public Waitable {
public:
    // The calling thread owns it, or nobody does.
    explicit Mutex(bool isOwned);

    // Fails with ERROR_NOT_OWNER for a thread that does not own it.
    void Release();

private:
    void Taken() override;

    std::atomic<DWORD> owner = 0;
};

}  // namespace win32
