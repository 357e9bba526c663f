#pragma once

#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstddef>

#include "base/Mutex.h"

namespace bridge {

// The longest time that the bridge waits for code of a module or of the agent to return.
inline constexpr std::chrono::milliseconds callWaitLimit{15000};

// Knows which threads are inside a module's callback, so that the thread that takes the callback away can wait until
// they have returned. It allocates nothing: a call under way is a node on its own thread's stack.
class CallGate {
public:
    // Whether a call waits until no other thread is inside. The thread inside may call again. Turns come in the order
    // of arrival, and for each turn one thread wakes.
    enum class Admission { Together, OneThreadAtATime };

    // How long calls may go on waiting for their turn while `threadInside` is inside. The first waiter asks again after
    // each `patienceInterval`, with the gate's lock held.
    using Patience = std::chrono::milliseconds (*)(DWORD threadInside) noexcept;
    static constexpr std::chrono::milliseconds withoutLimit = std::chrono::milliseconds::max();
    static constexpr std::chrono::milliseconds patienceInterval{50};

    // One call, from construction to destruction. Test it before calling: a closed gate lets no call in, and a call
    // that waits for its turn is turned away when the gate is closed or its patience is over.
    class Call {
    public:
        // Without `patience` the call waits for its turn as long as that takes.
        explicit Call(CallGate& gate, Admission admission = Admission::Together, Patience patience = nullptr);
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

    // No call enters any more; those inside go on.
    void Close();
    // Takes no lock.
    bool IsClosed() const noexcept { return isClosed; }
    // Whether that thread is inside.
    bool IsInside(DWORD threadId) const;

    // Waits until no call is inside on any other thread, at most `limit`. Returns at once when the calling thread is
    // inside itself: waiting there for others could be waiting for itself. False when others are still inside.
    bool WaitForOthers(std::chrono::milliseconds limit = callWaitLimit);
    // Closes the gate, then waits for the others up to callWaitLimit.
    void CloseAndWait();

private:
    struct Waiter;

    bool HasCallOf(DWORD threadId) const noexcept REQUIRES(mutex);
    bool HasCallOfOther(DWORD threadId) const noexcept REQUIRES(mutex);

    // The call stays outside when the gate turns it away.
    void WaitForTurn(Call& call, Patience patience) REQUIRES(mutex);
    // The first waiter asks for all of them. False when its patience is over.
    bool WaitPatiently(Waiter& waiter, Patience patience) REQUIRES(mutex);
    void LetIn(Call& call) noexcept REQUIRES(mutex);
    // Lets in the call that has waited longest of those that no call of another thread keeps waiting.
    void GiveTurn() noexcept REQUIRES(mutex);
    void TurnWaitersAway() noexcept REQUIRES(mutex);
    // The waiter's thread goes on, and its node ends, when the mutex is unlocked.
    static void EndWait(Waiter& waiter) noexcept;

    mutable Mutex mutex;
    Condition emptied;
    // In WaitForOthers. A call that ends makes the system call that wakes threads only when there are any.
    size_t threadsWaiting GUARDED_BY(mutex) = 0;
    Call* calls GUARDED_BY(mutex) = nullptr;
    // In the order of arrival. While there are any, a call is inside.
    Waiter* waiters GUARDED_BY(mutex) = nullptr;
    // Written under the mutex.
    std::atomic<bool> isClosed = false;
};

}  // namespace bridge
