#pragma once

#include "tool/ExitStatus.h"

namespace CLI {
class App;
}

namespace tool::play {

// Adds the sub-command `play`, and the hidden one by which it plays in a process of its own.
void AddPlay(CLI::App& program, ExitStatus& status);

}  // namespace tool::play
