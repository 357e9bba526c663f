// The chapters in which the agent and the module work with each other: one function for each of the bridge's services,
// each in a file of its own. A chapter waits for what it tells and throws a std::exception when that does not happen.
#pragma once

#include "Stage.h"

void TellOfPolicies(Stage& stage);
void TellOfTasks(Stage& stage);
void TellOfUpdates(Stage& stage);
// `version` is the agent's.
void TellOfProperties(Stage& stage, const char* version);
void TellOfAgentServices(Stage& stage, const char* version);
