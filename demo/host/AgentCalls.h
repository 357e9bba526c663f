#pragma once

#include <cstdint>

#include "Narrator.h"

// Reads the simulated agent's record of calls: what the bridge really did.
class AgentCalls {
public:
    explicit AgentCalls(Narrator& storyNarrator) : narrator(storyNarrator) {}

    // Waits until the bridge has called `function` once more than before the last Tell. Throws when it did not.
    static void WaitFor(const char* function, uint32_t milliseconds);
    // Shows, in a verbose story, the calls that were made since the last Tell, those for values as a number only, and
    // forgets them.
    void Tell();

private:
    Narrator& narrator;
};
