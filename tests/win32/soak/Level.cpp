// The level of the native builds: the layer counts its handles, and the sanitizers' allocators what is allocated.
#include "soak/Level.h"

#include <sanitizer/allocator_interface.h>
#include <unistd.h>
#include <windows.h>

#include <psapi.h>

#include <fstream>

Level MeasureLevel() {
    Level level;
    DWORD number = 0;
    ::GetProcessHandleCount(::GetCurrentProcess(), &number);
    level.handles = number;
    ::EnumProcessModules(::GetCurrentProcess(), nullptr, 0, &number);
    level.modules = number / sizeof(HMODULE);
    level.heapBytes = ::__sanitizer_get_current_allocated_bytes();
    size_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages >> pages;
    level.residentBytes = pages * static_cast<size_t>(::sysconf(_SC_PAGESIZE));
    return level;
}

size_t HandleTolerance(uint64_t /*operations*/) {
    return 0;
}

// The layer keeps 48 bytes for each library that was ever loaded, see References.cpp; two operations load less than
// one.
size_t HeapTolerance(uint64_t operations) {
    return size_t{64} * 1024 + 24 * operations;
}

size_t RoomTakenInAdvance() {
    return 0;
}

void EndProcessAtOnce(int exitCode) {
    ::_exit(exitCode);
}
