#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "tool/play/player/Stage.h"

namespace tool::play {

// What a verb does. Throws vsmsgbus::testing::Failure when something does not come about.
using StepFunction = void (*)(Stage& stage, const nlohmann::json& step);
using StepTable = std::map<std::string, StepFunction>;

StepTable MachineSteps();
StepTable ModuleSteps();
StepTable RequestSteps();
StepTable TaskSteps();
StepTable WaitSteps();
StepTable ExpectSteps();

}  // namespace tool::play
