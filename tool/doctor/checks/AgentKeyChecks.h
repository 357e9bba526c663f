#pragma once

#include "tool/doctor/Check.h"

namespace tool::doctor {

// The agent's key in both views of the registry, who may write it, and its version, as the bridge reads them.
Checks CheckAgentKey();

}  // namespace tool::doctor
