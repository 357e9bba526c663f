#pragma once

#include <cstdint>

namespace tool::play {

// The resources that this process holds.
struct Level {
    int64_t heapBytes = 0;  // in use, of all its heaps
    int64_t handles = 0;
    int64_t threads = 0;
};

Level MeasureLevel();

}  // namespace tool::play
