#pragma once

#include <gtest/gtest.h>

#include <cstddef>

// How many locks of the bridge's the calling thread holds; always 0 in the Windows builds, which do not count them.
size_t HeldLocks();

// To be called first in each callback of a test's module: the bridge must hold no lock then.
inline void ExpectNoLockHeld(const char* callback) {
    EXPECT_EQ(HeldLocks(), 0U) << callback << " is called by a thread that holds locks of the bridge";
}
