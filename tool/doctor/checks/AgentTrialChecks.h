#pragma once

#include <string>
#include <vector>

#include "tool/doctor/Check.h"
#include "tool/doctor/Options.h"

namespace tool::doctor {

// Has the agent's libraries of those file names tried in a process of its own, see trial/AgentTrial.h: a crash or a
// hang of the agent's is a finding there. Without ny_client.dll nothing is reached.
Checks CheckAgentTrial(const std::vector<std::string>& usableLibraries, const Options& options);

}  // namespace tool::doctor
