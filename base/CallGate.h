#pragma once

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <mutex>

// The longest time that the bridge waits for somebody else's code to return.
inline constexpr std::chrono::milliseconds callWaitLimit{15000};

// Knows which threads are inside code that belongs to somebody else (a module's callback), so that who takes that code
// away can wait until they are out. Costs no allocation: a call under way is a node on its own thread's stack.
class CallGate {
public:
    // One call, from construction to destruction. Test it before calling: a closed gate lets nobody in.
    class Call {
    public:
        explicit Call(CallGate& gate);
        ~Call();
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;

        explicit operator bool() const noexcept { return isInside; }

    private:
        friend class CallGate;

        CallGate& gate;
        const DWORD threadId;
        Call* next = nullptr;
        bool isInside = false;
    };

    CallGate() = default;
    CallGate(const CallGate&) = delete;
    CallGate& operator=(const CallGate&) = delete;

    // No call enters any more; those inside go on.
    void Close();
    bool IsClosed() const;

    // Waits until no call is inside on any other thread, at most `limit`. Returns at once when the calling thread is
    // inside itself: waiting there for others could be waiting for itself. False when others are still inside.
    bool WaitForOthers(std::chrono::milliseconds limit = callWaitLimit);

private:
    bool HasCallOf(DWORD threadId) const noexcept;

    mutable std::mutex mutex;
    std::condition_variable callEnded;
    Call* calls = nullptr;
    bool isClosed = false;
};
