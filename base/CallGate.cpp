#include "base/CallGate.h"

#include <mutex>

CallGate::Call::Call(CallGate& gateOfCall, Admission admission) : gate(gateOfCall), threadId(::GetCurrentThreadId()) {
    const std::lock_guard guard(gate.mutex);
    const auto mustWait = [&] { return admission == Admission::OneThreadAtATime && gate.HasCallOfOther(threadId); };
    gate.changed.Wait(gate.mutex, [&] { return gate.isClosed || gate.turnedAway != 0 || !mustWait(); });
    if (gate.isClosed || mustWait()) {
        return;
    }
    next = gate.calls;
    gate.calls = this;
    isInside = true;
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
    gate.changed.NotifyAll();
}

CallGate::TurnAwayOthers::TurnAwayOthers(CallGate& gateToGuard) : gate(gateToGuard) {
    const std::lock_guard guard(gate.mutex);
    if (gate.HasCallOf(::GetCurrentThreadId())) {
        isInside = true;
        ++gate.turnedAway;
        gate.changed.NotifyAll();
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
    changed.NotifyAll();
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
    return changed.WaitFor(mutex, limit, [this] { return calls == nullptr; });
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
