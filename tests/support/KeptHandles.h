#pragma once

#include <cstddef>
#include <cstdint>

// When a test makes the agent refuse to release a handle, the agent keeps it, and no code is left that could give it
// back. This knows the handles that were made while it lives, and gives back those that are still alive.
class KeptHandles {
public:
    KeptHandles();

    // Releases them, as the agent would when its process ends; forgets the misuse count. Returns how many there were.
    size_t Release();

private:
    uintptr_t before;
};
