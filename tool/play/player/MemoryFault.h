#pragma once

#include <cstdint>

namespace tool::play {

// Has memory run out in the bridge, and nowhere else in the process. Any thread.

// To be called once, with the bridge's library: its calls of malloc, calloc and realloc come here from now on. Throws
// vsmsgbus::testing::Failure when the library has no such calls.
void WatchMemoryOf(void* library);
// The bridge's nth allocation from now on fails; 1 is the next one. With `isAlways` all later ones fail, too.
void FailMemory(uint32_t nth, bool isAlways);
// Ends the fault: later allocations succeed.
void EndMemoryFault();
// How many allocations have failed.
uint32_t CountMemoryFaults();

}  // namespace tool::play
