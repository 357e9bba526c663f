#include "win32/held_locks.h"

#include <atomic>

namespace {

thread_local size_t heldLocks = 0;
std::atomic<void (*)(const void* lock)> lockListener = nullptr;

}  // namespace

void NoteLockTaken(const void* lock) noexcept {
    ++heldLocks;
    if (const auto listener = lockListener.load()) {
        listener(lock);
    }
}

void NoteLockLeft() noexcept {
    --heldLocks;
}

size_t HeldLocksOfThread() noexcept {
    return heldLocks;
}

void ListenToLocks(void (*listener)(const void* lock)) noexcept {
    lockListener = listener;
}
