#include "tool/play/player/Level.h"

#include <windows.h>

#include <tlhelp32.h>

#include <vector>

namespace tool::play {

namespace {

int64_t CountHeapBytes() {
    constexpr size_t most = 256;
    std::vector<HANDLE> heaps(most);
    heaps.resize(::GetProcessHeaps(most, heaps.data()));
    int64_t bytes = 0;
    for (HANDLE const heap : heaps) {
        ::HeapLock(heap);
        PROCESS_HEAP_ENTRY entry{};
        while (::HeapWalk(heap, &entry) != FALSE) {
            bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
        }
        ::HeapUnlock(heap);
    }
    return bytes;
}

// One by one where the system does not tell.
int64_t CountHandles() {
    DWORD told = 0;
    if (::GetProcessHandleCount(::GetCurrentProcess(), &told) != FALSE && told != 0) {
        return told;
    }
    int64_t count = 0;
    constexpr uintptr_t last = 0x40000;
    for (uintptr_t handle = 4; handle < last; handle += 4) {
        DWORD flags = 0;
        count += ::GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags) != FALSE ? 1 : 0;
    }
    return count;
}

int64_t CountThreads() {
    HANDLE const snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    int64_t count = 0;
    for (BOOL isThere = ::Thread32First(snapshot, &entry); isThere != FALSE;
         isThere = ::Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == ::GetCurrentProcessId() ? 1 : 0;
    }
    ::CloseHandle(snapshot);
    return count;
}

}  // namespace

Level MeasureLevel() {
    return {CountHeapBytes(), CountHandles(), CountThreads()};
}

}  // namespace tool::play
