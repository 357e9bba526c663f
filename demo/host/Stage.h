#pragma once

#include "AgentCalls.h"
#include "AgentInstaller.h"
#include "Narrator.h"
#include "RegistryRedirect.h"
#include "Summary.h"

// The narrator and the machine, which the story and its chapters share.
class Stage {
public:
    explicit Stage(Narrator& storyNarrator);

    Narrator& narrator;
    AgentCalls calls;
    Summary summary;
    simulator::RegistryRedirect registry;
    simulator::AgentInstaller installer;
};

// The bridge looks for a key that is missing every 15 seconds, and is told of changes in one that is there.
inline constexpr uint32_t lookTime = 20000;
inline constexpr uint32_t changeTime = 10000;

// Throws std::runtime_error when the story does not go as it is told.
void Demand(bool isTrue, const char* whatIsWrong);
