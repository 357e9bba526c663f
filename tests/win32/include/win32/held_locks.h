// How many locks of the product's the calling thread holds, and which are taken. The product tells it where
// COUNT_HELD_LOCKS is defined.
#pragma once

#include <cstddef>

extern "C" {

void NoteLockTaken(const void* lock) noexcept;
void NoteLockLeft() noexcept;

size_t HeldLocksOfThread() noexcept;

// From now on `listener` is called for each lock, by the thread that takes it; with null, nothing is.
void ListenToLocks(void (*listener)(const void* lock)) noexcept;

}  // extern "C"
