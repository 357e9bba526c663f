// The calls of agent functions, in the order in which they began.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>

#include "ny_simulator.h"

namespace simulator {

class CallRecord {
public:
    // The number of no call.
    static constexpr uint64_t noCall = UINT64_MAX;

    // Notes that the calling thread begins a call of `function`, a text that lives as long as the process. Returns the
    // call's number for End.
    uint64_t Begin(const char* function);
    // Notes the answer; does nothing for noCall and when the call was cleared away meanwhile.
    void End(uint64_t number, int32_t result) noexcept;

    // Calls of that function, of all functions when it is null.
    size_t Count(const char* function) const;
    std::optional<ny_sim_call_t> At(size_t index) const;
    void Clear();
    // Waits until `count` such calls have ended; false when they had not within that time.
    bool WaitForEnded(const char* function, size_t count, std::chrono::milliseconds time);

private:
    struct Call {
        ny_sim_call_t call;
        bool ended = false;
    };

    mutable std::mutex mutex;
    std::condition_variable callEnded;
    std::deque<Call> calls;
    uint64_t firstNumber = 0;
};

}  // namespace simulator
