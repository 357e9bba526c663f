#include "Waitable.h"

#include <algorithm>

#include "Callers.h"
#include "win32/threads.h"

namespace win32 {

void Waiter::Wake() {
    const std::lock_guard guard(mutex);
    isWoken = true;
    woken.notify_all();
}

bool Waiter::Wait(const Deadline& deadline) {
    std::unique_lock guard(mutex);
    const auto isOver = [this] { return isWoken; };
    if (!deadline) {
        woken.wait(guard, isOver);
    } else if (!woken.wait_until(guard, *deadline, isOver)) {
        return false;
    }
    isWoken = false;
    return true;
}

void Waitable::Signal() {
    const std::lock_guard guard(mutex);
    isSignalled = true;
    for (Waiter* waiter : waiters) {
        waiter->Wake();
    }
}

void Waitable::Reset() {
    const std::lock_guard guard(mutex);
    isSignalled = false;
}

bool Waitable::EndsWaitOf(Waiter& waiter) {
    const std::lock_guard guard(mutex);
    if (!isSignalled) {
        waiters.push_back(&waiter);
        return false;
    }
    isSignalled = stays;
    Taken();
    return true;
}

void Waitable::Dismiss(Waiter& waiter) {
    const std::lock_guard guard(mutex);
    std::erase(waiters, &waiter);
}

Mutex::Mutex(bool isOwned) : Waitable(false, !isOwned), owner(isOwned ? GetCurrentThreadId() : 0) {}

void Mutex::Release() {
    DWORD releasing = GetCurrentThreadId();
    if (!owner.compare_exchange_strong(releasing, 0)) {
        throw Failure{ERROR_NOT_OWNER};
    }
    Signal();
}

void Mutex::Taken() {
    owner = GetCurrentThreadId();
}

namespace {

using Waitables = std::vector<std::shared_ptr<Waitable>>;

// The index of the first that is signalled; none when the deadline has passed.
std::optional<size_t> TakeAny(const Waitables& objects, Waiter& waiter, const Waiter::Deadline& deadline) {
    do {
        for (size_t i = 0; i < objects.size(); ++i) {
            objects[i]->Dismiss(waiter);
            if (objects[i]->EndsWaitOf(waiter)) {
                return i;
            }
        }
    } while (waiter.Wait(deadline));
    return std::nullopt;
}

DWORD WaitForAny(const Waitables& objects, DWORD milliseconds) {
    Waiter waiter;
    Waiter::Deadline deadline;
    if (milliseconds != INFINITE) {
        deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    }
    const auto taken = TakeAny(objects, waiter, deadline);
    for (const auto& object : objects) {
        object->Dismiss(waiter);
    }
    return taken ? WAIT_OBJECT_0 + static_cast<DWORD>(*taken) : WAIT_TIMEOUT;
}

}  // namespace

}  // namespace win32

using win32::AnswerOr;
using win32::Event;
using win32::ObjectOf;
using win32::Waitable;

HANDLE CreateEventA(LPSECURITY_ATTRIBUTES /*security*/, BOOL manualReset, BOOL initialState, LPCSTR name) {
    win32::Support(name == nullptr, "named events");
    return AnswerOr<HANDLE>(nullptr, "CreateEventA", [&] {
        return win32::OpenHandle(std::make_shared<Event>(manualReset != FALSE, initialState != FALSE));
    });
}

HANDLE CreateEventW(LPSECURITY_ATTRIBUTES /*security*/, BOOL manualReset, BOOL initialState, LPCWSTR name) {
    win32::Support(name == nullptr, "named events");
    return AnswerOr<HANDLE>(nullptr, "CreateEventW", [&] {
        return win32::OpenHandle(std::make_shared<Event>(manualReset != FALSE, initialState != FALSE));
    });
}

BOOL SetEvent(HANDLE event) {
    return AnswerOr(FALSE, "SetEvent", [&] {
        ObjectOf<Event>(event)->Signal();
        return TRUE;
    });
}

BOOL ResetEvent(HANDLE event) {
    return AnswerOr(FALSE, "ResetEvent", [&] {
        ObjectOf<Event>(event)->Reset();
        return TRUE;
    });
}

HANDLE CreateMutexA(LPSECURITY_ATTRIBUTES /*security*/, BOOL initialOwner, LPCSTR /*name*/) {
    return AnswerOr<HANDLE>(nullptr, "CreateMutexA",
                            [&] { return win32::OpenHandle(std::make_shared<win32::Mutex>(initialOwner != FALSE)); });
}

BOOL ReleaseMutex(HANDLE mutex) {
    return AnswerOr(FALSE, "ReleaseMutex", [&] {
        ObjectOf<win32::Mutex>(mutex)->Release();
        return TRUE;
    });
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds) {
    return AnswerOr(WAIT_FAILED, "WaitForSingleObject",
                    [&] { return win32::WaitForAny({ObjectOf<Waitable>(handle)}, win32::LimitedWait(milliseconds)); });
}

DWORD WaitForMultipleObjects(DWORD count, const HANDLE* handles, BOOL waitForAll, DWORD milliseconds) {
    win32::Support(waitForAll == FALSE, "waiting for all objects");
    return AnswerOr(WAIT_FAILED, "WaitForMultipleObjects", [&] {
        if (count == 0 || count > MAXIMUM_WAIT_OBJECTS) {
            throw win32::Failure{ERROR_INVALID_PARAMETER};
        }
        win32::Waitables objects;
        for (const HANDLE handle : std::span(handles, count)) {
            objects.push_back(ObjectOf<Waitable>(handle));
        }
        return win32::WaitForAny(objects, win32::LimitedWait(milliseconds));
    });
}
