#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "Call.h"
#include "win32_faults.h"

namespace win32 {

namespace {

// Counting orders nothing between threads, so that it hides no race from the thread sanitizer.
struct Function {
    std::atomic<size_t> uses = 0;
    std::atomic<size_t> failingUse = 0;  // 0 for none
    std::atomic<DWORD> error = 0;
    std::atomic<FaultMode> mode = FaultMode::Once;
};

constinit Function functions[std::size(functionNames)];

Function* Find(const char* name) {
    const size_t index = name != nullptr ? IndexOf(name) : std::size(functionNames);
    return index < std::size(functionNames) ? &functions[index] : nullptr;
}

}  // namespace

std::optional<DWORD> CountUse(FunctionName name) noexcept {
    Function& function = functions[name.index];
    const size_t use = function.uses.fetch_add(1, std::memory_order_relaxed) + 1;
    const size_t failingUse = function.failingUse.load(std::memory_order_acquire);
    const bool isDue =
        failingUse != 0 && (use == failingUse || (use > failingUse && function.mode.load() == FaultMode::FromThenOn));
    return isDue ? std::optional(function.error.load()) : std::nullopt;
}

bool FailCall(const char* function, size_t nth, DWORD error, FaultMode mode) {
    Function* const found = Find(function);
    if (found == nullptr || nth == 0) {
        return false;
    }
    found->failingUse = 0;
    found->error = error;
    found->mode = mode;
    found->failingUse.store(found->uses.load() + nth, std::memory_order_release);
    return true;
}

void ClearFaults() {
    for (Function& function : functions) {
        function.failingUse = 0;
    }
}

size_t Uses(const char* function) {
    const Function* const found = Find(function);
    return found != nullptr ? found->uses.load() : 0;
}

void NotSupported(const char* what) noexcept {
    std::fprintf(stderr, "the Win32 layer of the native build does not support %s\n", what);
    std::abort();
}

}  // namespace win32
