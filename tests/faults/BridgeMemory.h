#pragma once

#include <cstddef>
#include <vector>

#include "support/ModuleImports.h"

// While it lives, counts what the bridge's own libraries allocate, on any thread, and has allocations fail when told
// so. What a test, the simulated agent or the system allocates is neither counted nor fails. One at a time.
class BridgeMemory {
public:
    BridgeMemory();
    ~BridgeMemory();
    BridgeMemory(const BridgeMemory&) = delete;
    BridgeMemory& operator=(const BridgeMemory&) = delete;

    // Counts from 1 again, and has as many allocations as `failures` fail, the nth being the first.
    static void Fail(size_t nth, size_t failures) noexcept;
    // Counts from 1 again; nothing fails.
    static void Count() noexcept { Fail(0, 0); }
    // Nothing is counted and nothing fails any more.
    static void Rest() noexcept;

    static size_t Allocations() noexcept;
    static size_t Failures() noexcept;

    // Every function that the bridge's libraries allocate with, as "<library>: <function>", without those that this
    // class stands in the way of.
    static std::vector<std::string> Uncounted();

private:
    struct Replaced {
        void** slot;
        void* original;
    };
    std::vector<Replaced> replaced;
};

inline constexpr size_t forEver = static_cast<size_t>(-1);

// For the functions that stand in the place of allocators: counts an allocation; whether it must fail.
bool IsRefused() noexcept;
bool IsCounting() noexcept;

// A function that is to stand in the place of a library's import.
struct Replacement {
    const char* library;
    const char* function;
    void* replacement;
};
std::vector<Replacement> AllocatorReplacements();
