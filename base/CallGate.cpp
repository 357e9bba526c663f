#include "base/CallGate.h"

CallGate::Call::Call(CallGate& gateOfCall) : gate(gateOfCall), threadId(::GetCurrentThreadId()) {
    const std::lock_guard guard(gate.mutex);
    if (gate.isClosed) {
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
    gate.callEnded.notify_all();
}

void CallGate::Close() {
    const std::lock_guard guard(mutex);
    isClosed = true;
}

bool CallGate::IsClosed() const {
    const std::lock_guard guard(mutex);
    return isClosed;
}

bool CallGate::WaitForOthers(std::chrono::milliseconds limit) {
    const DWORD self = ::GetCurrentThreadId();
    std::unique_lock guard(mutex);
    if (HasCallOf(self)) {
        return calls->next == nullptr;
    }
    return callEnded.wait_for(guard, limit, [this] { return calls == nullptr; });
}

bool CallGate::HasCallOf(DWORD threadId) const noexcept {
    for (const Call* call = calls; call != nullptr; call = call->next) {
        if (call->threadId == threadId) {
            return true;
        }
    }
    return false;
}
