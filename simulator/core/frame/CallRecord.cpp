#include "simulator/core/frame/CallRecord.h"

#include <windows.h>

#include <algorithm>
#include <cstring>

namespace simulator {

namespace {

bool IsOf(const char* function, const ny_sim_call_t& call) {
    return function == nullptr || std::strcmp(call.function, function) == 0;
}

}  // namespace

uint64_t CallRecord::Begin(const char* function) {
    const uint32_t threadId = GetCurrentThreadId();
    const std::lock_guard lock(mutex);
    calls.push_back({{function, threadId, NY_OK}});
    return firstNumber + calls.size() - 1;
}

void CallRecord::End(uint64_t number, int32_t result) noexcept {
    const std::lock_guard lock(mutex);
    // Both the number of a call cleared away and noCall give an index beyond the last.
    if (const uint64_t index = number - firstNumber; index < calls.size()) {
        Call& ended = calls[static_cast<size_t>(index)];
        ended.call.result = result;
        ended.ended = true;
    }
    callEnded.notify_all();
}

size_t CallRecord::Count(const char* function) const {
    const std::lock_guard lock(mutex);
    return static_cast<size_t>(
        std::count_if(calls.begin(), calls.end(), [function](const Call& call) { return IsOf(function, call.call); }));
}

std::optional<ny_sim_call_t> CallRecord::At(size_t index) const {
    const std::lock_guard lock(mutex);
    return index < calls.size() ? std::optional(calls[index].call) : std::nullopt;
}

void CallRecord::Clear() {
    const std::lock_guard lock(mutex);
    firstNumber += calls.size();
    // Frees the memory, too: the record of a busy moment is large.
    calls = {};
}

bool CallRecord::WaitForEnded(const char* function, size_t count, std::chrono::milliseconds time) {
    std::unique_lock lock(mutex);
    return callEnded.wait_for(lock, time, [this, function, count] {
        const auto ended = std::count_if(calls.begin(), calls.end(), [function](const Call& call) {
            return call.ended && IsOf(function, call.call);
        });
        return static_cast<size_t>(ended) >= count;
    });
}

}  // namespace simulator
