#include "base/CallGate.h"

namespace bridge {

namespace {

// The time after which a waiter that is not the first looks whether it has become the first.
constexpr std::chrono::milliseconds intervalBehindTheFirst{1000};

}  // namespace

// A call that waits for its turn, on its own thread's stack. Each has a condition variable of its own, so that one can
// be woken without the others.
struct CallGate::Waiter {
    Call& call;
    Waiter* next = nullptr;
    bool isWaiting = true;
    Condition answered{};
};

CallGate::Call::Call(CallGate& gateOfCall, Admission admission, Patience patience)
    : gate(gateOfCall), threadId(::GetCurrentThreadId()) {
    const ScopedLock guard(gate.mutex);
    if (gate.isClosed) {
        return;
    }
    if (admission == Admission::OneThreadAtATime && gate.HasCallOfOther(threadId)) {
        gate.WaitForTurn(*this, patience);
        return;
    }
    gate.LetIn(*this);
}

CallGate::Call::~Call() {
    if (!isInside) {
        return;
    }
    const ScopedLock guard(gate.mutex);
    Call** link = &gate.calls;
    while (*link != this) {
        link = &(*link)->next;
    }
    *link = next;
    gate.GiveTurn();
    if (gate.calls == nullptr && gate.threadsWaiting != 0) {
        gate.emptied.NotifyAll();
    }
}

void CallGate::Close() {
    const ScopedLock guard(mutex);
    isClosed = true;
    TurnWaitersAway();
}

bool CallGate::IsInside(DWORD threadId) const {
    const ScopedLock guard(mutex);
    return HasCallOf(threadId);
}

bool CallGate::WaitForOthers(std::chrono::milliseconds limit) {
    const DWORD self = ::GetCurrentThreadId();
    const ScopedLock guard(mutex);
    if (HasCallOf(self)) {
        return !HasCallOfOther(self);
    }
    const auto end = Condition::Clock::now() + limit;
    ++threadsWaiting;
    while (calls != nullptr && emptied.WaitUntil(mutex, end)) {
    }
    --threadsWaiting;
    return calls == nullptr;
}

void CallGate::CloseAndWait() {
    Close();
    WaitForOthers();
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

void CallGate::WaitForTurn(Call& call, Patience patience) {
    Waiter self{call};
    Waiter** link = &waiters;
    while (*link != nullptr) {
        link = &(*link)->next;
    }
    *link = &self;
    if (patience == nullptr) {
        while (self.isWaiting) {
            self.answered.Wait(mutex);
        }
    } else if (!WaitPatiently(self, patience)) {
        TurnWaitersAway();
    }
}

bool CallGate::WaitPatiently(Waiter& waiter, Patience patience) {
    DWORD threadInside = 0;
    std::chrono::milliseconds waited{0};
    for (;;) {
        const bool isFirst = waiters == &waiter;
        const auto interval = isFirst ? patienceInterval : intervalBehindTheFirst;
        const auto end = Condition::Clock::now() + interval;
        while (waiter.isWaiting && waiter.answered.WaitUntil(mutex, end)) {
        }
        if (!waiter.isWaiting) {
            return true;
        }
        if (!isFirst) {
            continue;
        }
        const std::chrono::milliseconds limit = patience(calls->threadId);
        const bool goesOn = limit != withoutLimit && calls->threadId == threadInside;
        waited = goesOn ? waited + interval : std::chrono::milliseconds{0};
        threadInside = calls->threadId;
        if (goesOn && waited >= limit) {
            return false;
        }
    }
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

void CallGate::EndWait(Waiter& waiter) noexcept {
    waiter.isWaiting = false;
    waiter.answered.NotifyAll();
}

}  // namespace bridge
