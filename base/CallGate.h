#pragma once

#include <windows.h>

#include <chrono>

#include "base/Mutex.h"

// The longest time that the bridge waits for somebody else's code to return.
inline constexpr std::chrono::milliseconds callWaitLimit{15000};

// Knows which threads are inside code that belongs to somebody else (a module's callback), so that who takes that code
// away can wait until they are out. Costs no allocation: a call under way is a node on its own thread's stack.
class CallGate {
public:
    // Whether a call waits until no other thread is inside. The thread inside may call again. Turns come in the order
    // of arrival, and for each turn one thread wakes. A turn is waited for without limit on purpose: only one thread at
    // a time is to be in a record of a module's, however long the module's call takes. Close and TurnAwayOthers end
    // that wait.
    enum class Admission { Together, OneThreadAtATime };

    // One call, from construction to destruction. Test it before calling: a closed gate lets nobody in, and a call that
    // waits for its turn is let in no more once the gate is closed or the others are turned away.
    class Call {
    public:
        explicit Call(CallGate& gate, Admission admission = Admission::Together);
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

    // While it lives, calls that would have to wait for the calling thread to come out are not let in: for a thread
    // inside that is about to wait for them in turn. Does nothing for a thread that is not inside.
    class TurnAwayOthers {
    public:
        explicit TurnAwayOthers(CallGate& gate);
        ~TurnAwayOthers();
        TurnAwayOthers(const TurnAwayOthers&) = delete;
        TurnAwayOthers& operator=(const TurnAwayOthers&) = delete;

    private:
        CallGate& gate;
        bool isInside = false;
    };

    CallGate() = default;
    CallGate(const CallGate&) = delete;
    CallGate& operator=(const CallGate&) = delete;

    // No call enters any more; those inside go on.
    void Close();
    bool IsClosed() const;
    // Whether the calling thread is.
    bool IsInside() const;

    // Waits until no call is inside on any other thread, at most `limit`. Returns at once when the calling thread is
    // inside itself: waiting there for others could be waiting for itself. False when others are still inside.
    bool WaitForOthers(std::chrono::milliseconds limit = callWaitLimit);

private:
    struct Waiter;

    bool HasCallOf(DWORD threadId) const noexcept;
    bool HasCallOfOther(DWORD threadId) const noexcept;

    // To be called with the mutex locked, like those that follow. Leaves the call outside when its wait is ended.
    void WaitForTurn(Call& call);
    void LetIn(Call& call) noexcept;
    // Lets in who waited longest of those that no other thread inside keeps waiting.
    void GiveTurn() noexcept;
    void TurnWaitersAway() noexcept;
    static void EndWait(Waiter& waiter) noexcept;

    mutable Mutex mutex;
    Condition emptied;
    Call* calls = nullptr;
    Waiter* waiters = nullptr;  // in the order of arrival; while there are any, somebody is inside
    unsigned turnedAway = 0;    // by so many threads
    bool isClosed = false;
};
