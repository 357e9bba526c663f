#pragma once

#include <gtest/gtest.h>

#include "support/AgentCalls.h"
#include "support/Event.h"

// Holds up the threads that come to it: they are inside from `isInside` until `mayGoOn`.
struct Checkpoint {
    void Stop() {
        isInside.Set();
        EXPECT_TRUE(mayGoOn.Wait());
    }

    Event isInside;
    Event mayGoOn;
};

// Holds up the calls of one of the agent's functions while it lives.
struct HeldAgentCall : Checkpoint {
    explicit HeldAgentCall(const char* function) : hook(function, [this] { Stop(); }) {}

    const AgentHook hook;
};
