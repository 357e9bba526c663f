#include "simulator/core/threads/CallbackGate.h"

#include <windows.h>

#include <algorithm>
#include <atomic>

namespace simulator {

namespace {

std::atomic<bool> impatient = false;

}  // namespace

void CallbackGate::SetImpatient(bool on) {
    impatient = on;
}

bool CallbackGate::Enter() {
    const std::lock_guard lock(mutex);
    if (closed) {
        return false;
    }
    threadsInside.push_back(GetCurrentThreadId());
    return true;
}

void CallbackGate::Leave() noexcept {
    const std::lock_guard lock(mutex);
    threadsInside.erase(std::find(threadsInside.begin(), threadsInside.end(), GetCurrentThreadId()));
    left.notify_all();
}

void CallbackGate::Close() {
    const std::lock_guard lock(mutex);
    closed = true;
}

void CallbackGate::WaitForOthers() {
    if (impatient) {
        return;
    }
    const uint32_t self = GetCurrentThreadId();
    std::unique_lock lock(mutex);
    left.wait(lock, [this, self] {
        return std::all_of(threadsInside.begin(), threadsInside.end(), [self](uint32_t id) { return id == self; });
    });
}

}  // namespace simulator
