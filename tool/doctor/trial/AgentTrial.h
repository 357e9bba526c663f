#pragma once

#include <string>
#include <vector>

#include "tool/doctor/trial/TrialSteps.h"

namespace tool::doctor {

// A service for which a product is registered with the agent, and the functions for that.
struct AgentService {
    const char* name;
    const char* registering;
    const char* withdrawing;
};
inline constexpr AgentService agentServices[] = {
    {"properties", "ny_property_register_provider_callback", "ny_property_unregister_provider_callback"},
    {"policies", "ny_policy_register_notification_callback", "ny_policy_unregister_notification_callback"},
    {"tasks", "ny_scheduler_register_task_callbacks", "ny_scheduler_unregister_task_callbacks"},
    {"updates", "ny_updater_register_callbacks", "ny_updater_unregister_callbacks"},
};

// The name of the step in which a library is loaded.
std::string LoadingStep(const std::string& library);

// Called in a process of its own. Loads the agent's libraries of those file names as the bridge does, creates a client,
// registers the product for each service and withdraws it, and releases all. Each step has the name of the agent's
// function and its answer as the code; NY_FUNCTION_MISSING when the function is missing.
void TryAgent(const std::string& productId, const std::vector<std::string>& libraries, const TrialSteps& steps);

}  // namespace tool::doctor
