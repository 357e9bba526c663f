#include "support/AgentCalls.h"

#include <gtest/gtest.h>

#include <deque>
#include <mutex>
#include <utility>

#include "base/CallGate.h"
#include "support/LineLog.h"

std::vector<std::string> AgentCalls() {
    std::vector<std::string> functions;
    for (size_t i = 0; i < ny_sim_call_count(nullptr); ++i) {
        ny_sim_call_t call{};
        EXPECT_EQ(ny_sim_get_call(i, &call), NY_OK);
        functions.push_back(call.function);
    }
    return functions;
}

// The agent runs a hook with no lock held: a call that began before the hook was removed may come to it afterwards. The
// code and the gates of all hooks therefore stay.
struct AgentHook::Code {
    explicit Code(std::function<void()> whatToRun) : run(std::move(whatToRun)) {}

    static Code& Make(std::function<void()> whatToRun) {
        static std::mutex& mutex = *new std::mutex;
        static std::deque<Code>& all = *new std::deque<Code>;
        const std::lock_guard lock(mutex);
        return all.emplace_back(std::move(whatToRun));
    }

    static void Run(const char* /*function*/, void* userData) {
        auto& code = *static_cast<Code*>(userData);
        if (const bridge::CallGate::Call call(code.gate); call) {
            code.run();
        }
    }

    const std::function<void()> run;
    bridge::CallGate gate;
};

AgentHook::AgentHook(const char* hookedFunction, std::function<void()> whatToRun)
    : function(hookedFunction), code(Code::Make(std::move(whatToRun))) {
    EXPECT_EQ(ny_sim_set_hook(function, &Code::Run, &code), NY_OK);
}

AgentHook::~AgentHook() {
    ny_sim_set_hook(function, nullptr, nullptr);
    code.gate.Close();
    EXPECT_TRUE(code.gate.WaitForOthers(soon));
}
