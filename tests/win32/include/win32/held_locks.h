// How many locks of the product's the calling thread holds, and how often one was taken so far. The product tells it
// where COUNT_HELD_LOCKS is defined.
#pragma once

#include <cstddef>

extern "C" {

void NoteLockTaken() noexcept;
void NoteLockLeft() noexcept;

size_t HeldLocksOfThread() noexcept;
size_t LocksTakenByProcess() noexcept;

}  // extern "C"
