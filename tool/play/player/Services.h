#pragma once

#include <string>

#include "vsmsgbus_testing.hpp"

namespace tool::play {

// "properties", "policies", "tasks" or "updates", as the table of verbs has them.
vsmsgbus::testing::Service ServiceOf(const std::string& name);

}  // namespace tool::play
