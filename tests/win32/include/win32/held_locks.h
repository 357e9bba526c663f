// How many locks of the product's the calling thread holds. The product tells it where COUNT_HELD_LOCKS is defined.
#pragma once

#include <cstddef>

extern "C" {

void NoteLockTaken() noexcept;
void NoteLockLeft() noexcept;

size_t HeldLocksOfThread() noexcept;

}  // extern "C"
