#pragma once

#include <functional>
#include <string>
#include <vector>

#include "dispatcher/Dispatcher.h"
#include "support/AgentCalls.h"
#include "support/AgentEnvironment.h"
#include "values/AgentException.h"
#include "values/AgentHandle.h"

using Calls = std::vector<std::string>;

// A machine with the process's dispatcher; the agent is installed by the tests that need it.
class ValuesTest : public AgentTest {
protected:
    void SetUp() override { ASSERT_EQ(DispatcherCreate(nullptr, &dispatcher), NY_OK); }

    void TearDown() override {
        DispatcherRelease(dispatcher);
        AgentTest::TearDown();
    }

    // A variant of the agent's own, made without a call of an agent function. Its library is loaded for its release.
    static VariantOwner FromJson(const char* json) {
        ny_variant_t* variant = nullptr;
        EXPECT_EQ(ny_sim_variant_from_json(json, &variant), NY_OK);
        VariantOwner owner;
        *owner.Out() = variant;
        return owner;
    }

    // The code of the agent exception that `body` raises; -1 when it raises none.
    static int32_t CodeOf(const std::function<void()>& body) {
        try {
            body();
        } catch (const corvane::ny::utils::exception& thrown) {
            return thrown.Code();
        }
        return -1;
    }

    // The agent calls that `body` makes, in order.
    static Calls CallsOf(const std::function<void()>& body) {
        ny_sim_clear_calls();
        body();
        return AgentCalls();
    }

    Dispatcher* dispatcher = nullptr;
};
