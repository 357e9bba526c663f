#include "base/CallGate.h"

#include <mutex>

// A call that waits for its turn, on its own thread's stack. Each sleeps by itself, so that no other wakes with it.
struct CallGate::Waiter {
    Call& call;
    Waiter* next = nullptr;
    bool isWaiting = true;
    Condition answered{};
};

CallGate::Call::Call(CallGate& gateOfCall, Admission admission) : gate(gateOfCall), threadId(::GetCurrentThreadId()) {
    const std::lock_guard guard(gate.mutex);
    if (gate.isClosed) {
        return;
    }
    if (admission == Admission::OneThreadAtATime && gate.HasCallOfOther(threadId)) {
        if (gate.turnedAway == 0) {
            gate.WaitForTurn(*this);
        }
        return;
    }
    gate.LetIn(*this);
}

CallGate::Call::~Call() {
    if (!isInside) {
        return;
    }
    const std::lock_guard guard(gate.mutex);
    Call** link = &gate.calls;
    while (*link != this) {
        link = &(*link)->next;
    }
    *link = next;
    gate.GiveTurn();
    if (gate.calls == nullptr) {
        gate.emptied.NotifyAll();
    }
}

CallGate::TurnAwayOthers::TurnAwayOthers(CallGate& gateToGuard) : gate(gateToGuard) {
    const std::lock_guard guard(gate.mutex);
    if (gate.HasCallOf(::GetCurrentThreadId())) {
        isInside = true;
        ++gate.turnedAway;
        gate.TurnWaitersAway();
    }
}

CallGate::TurnAwayOthers::~TurnAwayOthers() {
    if (isInside) {
        const std::lock_guard guard(gate.mutex);
        --gate.turnedAway;
    }
}

void CallGate::Close() {
    const std::lock_guard guard(mutex);
    isClosed = true;
    TurnWaitersAway();
}

bool CallGate::IsClosed() const {
    const std::lock_guard guard(mutex);
    return isClosed;
}

bool CallGate::IsInside() const {
    const std::lock_guard guard(mutex);
    return HasCallOf(::GetCurrentThreadId());
}

bool CallGate::WaitForOthers(std::chrono::milliseconds limit) {
    const DWORD self = ::GetCurrentThreadId();
    const std::lock_guard guard(mutex);
    if (HasCallOf(self)) {
        return !HasCallOfOther(self);
    }
    return emptied.WaitFor(mutex, limit, [this] { return calls == nullptr; });
}

bool CallGate::HasCallOf(DWORD threadId) const noexcept {
    for (const Call* call = calls; call != nullptr; call = call->next) {
        if (call->threadId == threadId) {
            return true;
        }
    }
    return false;
}

bool CallGate::HasCallOfOther(DWORD threadId) const noexcept {
    for (const Call* call = calls; call != nullptr; call = call->next) {
        if (call->threadId != threadId) {
            return true;
        }
    }
    return false;
}

void CallGate::WaitForTurn(Call& call) {
    Waiter self{call};
    Waiter** link = &waiters;
    while (*link != nullptr) {
        link = &(*link)->next;
    }
    *link = &self;
    self.answered.Wait(mutex, [&self] { return !self.isWaiting; });
}

void CallGate::LetIn(Call& call) noexcept {
    call.next = calls;
    calls = &call;
    call.isInside = true;
}

void CallGate::GiveTurn() noexcept {
    for (Waiter** link = &waiters; *link != nullptr; link = &(*link)->next) {
        Waiter& waiter = **link;
        if (!HasCallOfOther(waiter.call.threadId)) {
            *link = waiter.next;
            LetIn(waiter.call);
            EndWait(waiter);
            return;
        }
    }
}

void CallGate::TurnWaitersAway() noexcept {
    while (waiters != nullptr) {
        Waiter& first = *waiters;
        waiters = first.next;
        EndWait(first);
    }
}

// The waiter's thread goes on, and its node ends, when the mutex is unlocked.
void CallGate::EndWait(Waiter& waiter) noexcept {
    waiter.isWaiting = false;
    waiter.answered.NotifyAll();
}
