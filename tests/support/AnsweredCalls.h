#pragma once

#include <string>
#include <vector>

#include "ny_simulator.h"

// The agent calls since the last ny_sim_reset or ny_sim_clear_calls, in order, each as "<function> <answer>".
inline std::vector<std::string> AnsweredCalls() {
    std::vector<std::string> calls;
    ny_sim_call_t call = {};
    for (size_t i = 0; ny_sim_get_call(i, &call) == NY_OK; ++i) {
        calls.push_back(std::string(call.function) + " " + std::to_string(call.result));
    }
    return calls;
}
