#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "Call.h"
#include "Callers.h"
#include "win32_faults.h"

namespace win32 {

namespace {

// Counting orders nothing between threads, so that it hides no race from the thread sanitizer.
class UseCount {
public:
    // The error of the fault that is due, if one is.
    std::optional<DWORD> CountOne() {
        const size_t use = uses.fetch_add(1, std::memory_order_relaxed) + 1;
        const size_t first = failingUse.load(std::memory_order_acquire);
        const bool isDue = first != 0 && (use == first || (use > first && mode.load() == FaultMode::FromThenOn));
        return isDue ? std::optional(error.load()) : std::nullopt;
    }

    void Fail(size_t nth, DWORD faultError, FaultMode faultMode) {
        failingUse = 0;
        error = faultError;
        mode = faultMode;
        failingUse.store(uses.load() + nth, std::memory_order_release);
    }
    void Clear() { failingUse = 0; }
    size_t Uses() const { return uses.load(); }

private:
    std::atomic<size_t> uses = 0;
    std::atomic<size_t> failingUse = 0;  // 0 for none
    std::atomic<DWORD> error = 0;
    std::atomic<FaultMode> mode = FaultMode::Once;
};

struct Function {
    UseCount all;
    UseCount watched;

    UseCount& Of(Callers callers) { return callers == Callers::All ? all : watched; }
};

constinit Function functions[std::size(functionNames)];
constinit std::atomic<size_t> failedUses = 0;

Function* Find(const char* name) {
    const size_t index = name != nullptr ? IndexOf(name) : std::size(functionNames);
    return index < std::size(functionNames) ? &functions[index] : nullptr;
}

}  // namespace

std::optional<DWORD> CountUse(FunctionName name) noexcept {
    Function& function = functions[name.index];
    std::optional<DWORD> due = function.all.CountOne();
    if (IsCallerWatched()) {
        const std::optional<DWORD> dueForWatched = function.watched.CountOne();
        due = due ? due : dueForWatched;
    }
    failedUses.fetch_add(due ? 1 : 0, std::memory_order_relaxed);
    return due;
}

bool FailCall(const char* function, size_t nth, DWORD error, FaultMode mode, Callers callers) {
    Function* const found = Find(function);
    if (found == nullptr || nth == 0) {
        return false;
    }
    found->Of(callers).Fail(nth, error, mode);
    return true;
}

void ClearFaults() {
    for (Function& function : functions) {
        function.all.Clear();
        function.watched.Clear();
    }
}

size_t Uses(const char* function, Callers callers) {
    Function* const found = Find(function);
    return found != nullptr ? found->Of(callers).Uses() : 0;
}

size_t FailedUses() {
    return failedUses.load();
}

const char* FunctionAt(size_t index) {
    return index < std::size(functionNames) ? functionNames[index].data() : nullptr;
}

void NotSupported(const char* what) noexcept {
    std::fprintf(stderr, "the Win32 layer of the native build does not support %s\n", what);
    std::abort();
}

}  // namespace win32
