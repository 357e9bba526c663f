#pragma once

#include <cstdint>

namespace tool::play {

// Memory runs out in the bridge, and nowhere else in the process. Any thread.

// The bridge's library, once: its calls of malloc, calloc and realloc come here from now on. Throws
// vsmsgbus::testing::Failure when it has none.
void WatchMemoryOf(void* library);
// Its nth allocation from now on fails, 1 is the next one; and all later ones with it, or none.
void FailMemory(uint32_t nth, bool isAlways);
// There is memory again.
void EndMemoryFault();
// How many allocations have failed.
uint32_t CountMemoryFaults();

}  // namespace tool::play
