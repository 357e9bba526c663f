#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>

// The resources that the process holds at one moment, to be compared with those of another moment when nothing is under
// way.
struct Level {
    size_t handles = 0;        // of the operating system's, or of the layer that stands for it
    size_t modules = 0;        // libraries that are loaded
    size_t heapBytes = 0;      // allocated and not freed
    size_t heapBlocks = 0;     // the same; 0 where it is not known
    size_t residentBytes = 0;  // for people to read: freed memory stays with the process
};

Level MeasureLevel();

// By how many handles two levels may differ that so many operations lie between. On Windows a lock gets handles when it
// is first contended, and the last threads of the agent may still be on their way out: a handle that is lost with each
// Entry, each start of the agent or each callback is many more.
size_t HandleTolerance(uint64_t operations);

// By how many allocated bytes two levels may differ that so many operations lie between, although nothing is lost:
// tables that grow with their use, and the few registrations whose memory the contract gives up. A loss of a few bytes
// with each operation shows.
size_t HeapTolerance(uint64_t operations);

// By how many bytes more when many threads allocated at once: room for small blocks that the heap took in advance and
// counts as allocated.
size_t RoomTakenInAdvance();

// Without waiting for any thread: for a process whose threads hang.
[[noreturn]] void EndProcessAtOnce(int exitCode);

std::ostream& operator<<(std::ostream& out, const Level& level);
