#include "Callers.h"

#include <link.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <string_view>

#include "win32/threads.h"
#include "win32_faults.h"

namespace win32 {

namespace {

struct CodeRange {
    uintptr_t begin = 0;
    uintptr_t end = 0;

    bool Contains(uintptr_t address) const { return begin <= address && address < end; }
};

struct Search {
    std::string_view file;  // or
    uintptr_t address = 0;  // in its code
    CodeRange found;
};

int LookAtModule(dl_phdr_info* info, size_t /*size*/, void* data) {
    auto& search = *static_cast<Search*>(data);
    for (size_t i = 0; i < info->dlpi_phnum; ++i) {
        const ElfW(Phdr)& segment = info->dlpi_phdr[i];
        const uintptr_t begin = info->dlpi_addr + segment.p_vaddr;
        const CodeRange range{begin, begin + segment.p_memsz};
        const bool isMeant = search.address != 0 ? range.Contains(search.address)
                                                 : std::filesystem::path(info->dlpi_name).filename() == search.file;
        if (segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0 && isMeant) {
            search.found = range;
            return 1;
        }
    }
    return 0;
}

CodeRange Find(Search search) {
    ::dl_iterate_phdr(LookAtModule, &search);
    return search.found;
}

// May be set for the next library while a thread that has not ended yet still looks at the last one.
struct WatchedCode {
    std::atomic<uintptr_t> begin = 0;
    std::atomic<uintptr_t> end = 0;

    CodeRange Range() const { return {begin.load(std::memory_order_relaxed), end.load(std::memory_order_relaxed)}; }
};

constexpr size_t mostLibraries = 4;
std::array<WatchedCode, mostLibraries> watched;
std::atomic<size_t> watchedCount = 0;
std::atomic<DWORD> longestWait = INFINITE;

struct Frame {
    const Frame* caller;
    uintptr_t returnAddress;
};

// The first address on the stack that is not the layer's. The layer's own functions have frame pointers; what lies
// below a thread of its own need not have any.
__attribute__((no_sanitize("address", "thread"), noinline)) uintptr_t CallerOfLayer() {
    constexpr uintptr_t largestFrame = 0x10000;
    static const CodeRange layer = Find({{}, reinterpret_cast<uintptr_t>(&CallerOfLayer), {}});
    const auto* frame = static_cast<const Frame*>(__builtin_frame_address(0));
    while (layer.Contains(frame->returnAddress)) {
        const auto distance = reinterpret_cast<uintptr_t>(frame->caller) - reinterpret_cast<uintptr_t>(frame);
        if (distance == 0 || distance > largestFrame) {
            return 0;
        }
        frame = frame->caller;
    }
    return frame->returnAddress;
}

}  // namespace

bool IsCallerWatched() noexcept {
    const size_t count = watchedCount.load(std::memory_order_acquire);
    if (count == 0) {
        return false;
    }
    const uintptr_t caller = CallerOfLayer();
    for (size_t i = 0; i < count; ++i) {
        if (watched[i].Range().Contains(caller)) {
            return true;
        }
    }
    return false;
}

DWORD LimitedWait(DWORD milliseconds) noexcept {
    const DWORD limit = longestWait.load(std::memory_order_relaxed);
    return milliseconds == INFINITE || milliseconds <= limit || !IsCallerWatched() ? milliseconds : limit;
}

bool WatchLibrary(const char* fileName) {
    const size_t count = watchedCount.load();
    const CodeRange range = Find({fileName, 0, {}});
    if (range.end == 0 || count == mostLibraries) {
        return false;
    }
    watched[count].begin = range.begin;
    watched[count].end = range.end;
    watchedCount.store(count + 1, std::memory_order_release);
    return true;
}

void UnwatchLibraries() {
    watchedCount = 0;
    longestWait = INFINITE;
}

void LimitWatchedWaits(DWORD milliseconds) {
    longestWait = milliseconds;
}

}  // namespace win32
