#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "tool/play/player/Stage.h"

namespace tool::play {

// Plays a step of one verb. Throws vsmsgbus::testing::Failure when an expectation of the step is not met.
using StepFunction = void (*)(Stage& stage, const nlohmann::json& step);
using StepTable = std::map<std::string, StepFunction>;

StepTable MachineSteps();
StepTable ModuleSteps();
StepTable RequestSteps();
StepTable TaskSteps();
StepTable WaitSteps();
StepTable ExpectSteps();

}  // namespace tool::play
