#include "win32/held_locks.h"

#include <atomic>

namespace {

thread_local size_t heldLocks = 0;
std::atomic<size_t> locksTaken = 0;

}  // namespace

void NoteLockTaken() noexcept {
    ++heldLocks;
    ++locksTaken;
}

void NoteLockLeft() noexcept {
    --heldLocks;
}

size_t HeldLocksOfThread() noexcept {
    return heldLocks;
}

size_t LocksTakenByProcess() noexcept {
    return locksTaken;
}
