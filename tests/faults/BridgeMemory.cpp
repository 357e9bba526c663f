#include "faults/BridgeMemory.h"

#include <algorithm>
#include <atomic>
#include <set>

#include "support/SystemFunction.h"

namespace {

std::atomic<bool> isCounting = false;
std::atomic<size_t> allocations = 0;
std::atomic<size_t> refused = 0;
std::atomic<size_t> firstFailure = 0;
std::atomic<size_t> lastFailure = 0;

bool IsAllocator(const std::string& function) {
    static const std::set<std::string> allocators = {
        "malloc",    "calloc",      "realloc",    "reallocarray", "aligned_alloc", "posix_memalign",
        "memalign",  "strdup",      "_strdup",    "wcsdup",       "_wcsdup",       "_aligned_malloc",
        "HeapAlloc", "HeapReAlloc", "LocalAlloc", "GlobalAlloc",  "VirtualAlloc",
    };
    return function.starts_with("_Znw") || function.starts_with("_Zna") || allocators.contains(function);
}

}  // namespace

bool IsCounting() noexcept {
    return isCounting.load();
}

bool IsRefused() noexcept {
    if (!isCounting.load()) {
        return false;
    }
    const size_t number = ++allocations;
    const bool isRefused = firstFailure.load() != 0 && number >= firstFailure.load() && number <= lastFailure.load();
    refused += isRefused ? 1 : 0;
    return isRefused;
}

BridgeMemory::BridgeMemory() {
    Rest();
    for (const Replacement& wanted : AllocatorReplacements()) {
        for (const ModuleImport& import : ImportsOf(wanted.library)) {
            if (import.function == wanted.function) {
                replaced.push_back({import.slot, *import.slot});
                SetImport(import.slot, wanted.replacement);
            }
        }
    }
}

BridgeMemory::~BridgeMemory() {
    Rest();
    for (const Replaced& import : replaced) {
        SetImport(import.slot, import.original);
    }
}

void BridgeMemory::Fail(size_t nth, size_t count) noexcept {
    isCounting = false;
    allocations = 0;
    refused = 0;
    firstFailure = nth;
    lastFailure = count == forEver ? forEver : nth + count - 1;  // of no meaning for nth 0
    isCounting = true;
}

void BridgeMemory::Rest() noexcept {
    isCounting = false;
}

size_t BridgeMemory::Allocations() noexcept {
    return allocations;
}

size_t BridgeMemory::Failures() noexcept {
    return refused;
}

std::vector<std::string> BridgeMemory::Uncounted() {
    const std::vector<Replacement> known = AllocatorReplacements();
    std::vector<std::string> uncounted;
    for (const char* library : {"VsMsgbus.dll", "LogLib.dll"}) {
        for (const ModuleImport& import : ImportsOf(library)) {
            const auto isReplaced = [&](const Replacement& replacement) {
                return replacement.library == std::string_view(library) && replacement.function == import.function;
            };
            if (IsAllocator(import.function) && std::none_of(known.begin(), known.end(), isReplaced)) {
                uncounted.push_back(std::string(library) + ": " + import.function);
            }
        }
    }
    return uncounted;
}
