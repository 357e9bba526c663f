#pragma once

#include "tool/doctor/Check.h"

namespace tool::doctor {

// The key into which the bridge writes the names of policies. It is opened as the bridge does, and nothing is written.
Check CheckPolicyNames();

}  // namespace tool::doctor
