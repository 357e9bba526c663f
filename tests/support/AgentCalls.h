#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ny_simulator.h"

// The agent functions called since the last reset or clear, in order.
std::vector<std::string> AgentCalls();

// Runs the test's code at the start of every call of an agent function, while it lives. When it ends, none of that code
// runs on another thread any more.
class AgentHook {
public:
    AgentHook(const char* hookedFunction, std::function<void()> whatToRun);
    ~AgentHook();
    AgentHook(const AgentHook&) = delete;
    AgentHook& operator=(const AgentHook&) = delete;

private:
    struct Code;

    const char* const function;
    Code& code;
};
