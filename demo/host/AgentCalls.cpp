#include "AgentCalls.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string_view>

#include "ny_simulator.h"

namespace {

bool IsAboutValues(std::string_view function) {
    return function.starts_with("ny_variant_") || function.starts_with("ny_buffer_") ||
           function.starts_with("ny_wbuffer_");
}

}  // namespace

void AgentCalls::WaitFor(const char* function, uint32_t milliseconds) {
    if (ny_sim_wait_calls(function, 1, milliseconds) != NY_OK) {
        throw std::runtime_error(fmt::format("the bridge did not call {} within {} ms", function, milliseconds));
    }
}

void AgentCalls::Tell() {
    ny_sim_call_t call{};
    size_t valueCalls = 0;
    for (size_t index = 0; ny_sim_get_call(index, &call) == NY_OK; ++index) {
        if (IsAboutValues(call.function)) {
            ++valueCalls;
        } else {
            narrator.Detail("bridge",
                            fmt::format("calls {} on thread {}: answer {}", call.function, call.threadId, call.result));
        }
    }
    if (valueCalls != 0) {
        narrator.Detail("bridge", fmt::format("makes, reads and releases values in {} further calls", valueCalls));
    }
    ny_sim_clear_calls();
}
