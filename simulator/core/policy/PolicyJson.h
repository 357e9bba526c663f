#pragma once

#include <vector>

#include "simulator/core/policy/Policy.h"

namespace simulator {

// The policies of a text in the form that ny_sim_policy.h tells. Throws Failure when it is not in that form.
std::vector<PolicyPointer> PoliciesFromJson(const char* json);

}  // namespace simulator
