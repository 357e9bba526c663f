#pragma once

#include <string>

#include "AgentCalls.h"
#include "AgentInstaller.h"
#include "Narrator.h"
#include "RegistryRedirect.h"

// The story of one module on a machine that first has no agent. Every step waits for what it tells and throws a
// std::exception when that does not happen.
class Story {
public:
    explicit Story(Narrator& storyNarrator);

    void Tell();

private:
    void EnterWithoutAgent();
    void Install();
    void Upgrade();
    void Remove();
    void Leave();

    void AskForProperties();
    void SayWhereLibrariesAre();
    // Throws std::runtime_error.
    static void Demand(bool isTrue, const char* whatIsWrong);

    Narrator& narrator;
    AgentCalls calls;
    simulator::RegistryRedirect registry;
    simulator::AgentInstaller installer;
};
