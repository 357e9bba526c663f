#pragma once

#include "tool/ExitStatus.h"

namespace CLI {
class App;
}

namespace tool {

// Adds the sub-command that makes a page of a record of the checking bridge. `status` lives as long as `program`.
void AddTimeline(CLI::App& program, ExitStatus& status);

}  // namespace tool
