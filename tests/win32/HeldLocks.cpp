#include "win32/held_locks.h"

namespace {

thread_local size_t heldLocks = 0;

}  // namespace

void NoteLockTaken() noexcept {
    ++heldLocks;
}

void NoteLockLeft() noexcept {
    --heldLocks;
}

size_t HeldLocksOfThread() noexcept {
    return heldLocks;
}
