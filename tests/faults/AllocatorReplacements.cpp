// On Windows each of the bridge's libraries has its C++ runtime in it: whatever it allocates, an exception and the
// runtime's own included, comes from these.
#include <cstdlib>
#include <cstring>

#include "faults/BridgeMemory.h"

namespace {

void* Malloc(size_t size) {
    return IsRefused() ? nullptr : std::malloc(size);
}

void* Calloc(size_t count, size_t size) {
    return IsRefused() ? nullptr : std::calloc(count, size);
}

void* Realloc(void* memory, size_t size) {
    return IsRefused() ? nullptr : std::realloc(memory, size);
}

char* Duplicate(const char* text) {
    return IsRefused() ? nullptr : ::_strdup(text);
}

}  // namespace

std::vector<Replacement> AllocatorReplacements() {
    std::vector<Replacement> replacements;
    for (const char* library : {"VsMsgbus.dll", "LogLib.dll"}) {
        replacements.push_back({library, "malloc", reinterpret_cast<void*>(&Malloc)});
        replacements.push_back({library, "calloc", reinterpret_cast<void*>(&Calloc)});
        replacements.push_back({library, "realloc", reinterpret_cast<void*>(&Realloc)});
        replacements.push_back({library, "_strdup", reinterpret_cast<void*>(&Duplicate)});
    }
    return replacements;
}
