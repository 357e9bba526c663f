#include "CallRecord.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

namespace simulator {

uint64_t CallRecord::Begin(const char* function) {
    const uint32_t threadId = GetCurrentThreadId();
    const std::lock_guard lock(mutex);
    calls.push_back({function, threadId, NY_OK});
    return firstNumber + calls.size() - 1;
}

void CallRecord::End(uint64_t number, int32_t result) noexcept {
    const std::lock_guard lock(mutex);
    // Both the number of a call cleared away and noCall give an index beyond the last.
    if (const uint64_t index = number - firstNumber; index < calls.size()) {
        calls[static_cast<size_t>(index)].result = result;
    }
}

size_t CallRecord::Count(const char* function) const {
    const std::lock_guard lock(mutex);
    if (function == nullptr) {
        return calls.size();
    }
    return static_cast<size_t>(std::count_if(calls.begin(), calls.end(), [function](const ny_sim_call_t& call) {
        return std::strcmp(call.function, function) == 0;
    }));
}

std::optional<ny_sim_call_t> CallRecord::At(size_t index) const {
    const std::lock_guard lock(mutex);
    return index < calls.size() ? std::optional(calls[index]) : std::nullopt;
}

void CallRecord::Clear() {
    const std::lock_guard lock(mutex);
    firstNumber += calls.size();
    calls.clear();
}

}  // namespace simulator
