#pragma once

#include "Narrator.h"
#include "Stage.h"

// The story of one module on a machine that first has no agent. Every step waits for what it tells and throws a
// std::exception when that does not happen.
class Story {
public:
    explicit Story(Narrator& storyNarrator) : stage(storyNarrator) {}

    void Tell();

private:
    void EnterWithoutAgent();
    void Install();
    void Upgrade();
    void Remove();
    void Leave();

    void SayWhereLibrariesAre();

    Stage stage;
};
