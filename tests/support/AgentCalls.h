#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "ny_simulator.h"

// The agent functions called since the last reset or clear, in order.
inline std::vector<std::string> AgentCalls() {
    std::vector<std::string> functions;
    for (size_t i = 0; i < ny_sim_call_count(nullptr); ++i) {
        ny_sim_call_t call{};
        EXPECT_EQ(ny_sim_get_call(i, &call), NY_OK);
        functions.push_back(call.function);
    }
    return functions;
}

// Runs the test's code at the start of every call of an agent function, while it lives.
class AgentHook {
public:
    AgentHook(const char* hookedFunction, std::function<void()> whatToRun)
        : function(hookedFunction), run(std::move(whatToRun)) {
        EXPECT_EQ(ny_sim_set_hook(function, &Run, this), NY_OK);
    }
    ~AgentHook() { ny_sim_set_hook(function, nullptr, nullptr); }
    AgentHook(const AgentHook&) = delete;
    AgentHook& operator=(const AgentHook&) = delete;

private:
    static void Run(const char* /*function*/, void* userData) { static_cast<AgentHook*>(userData)->run(); }

    const char* const function;
    const std::function<void()> run;
};
