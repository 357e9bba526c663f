#pragma once

#include "tool/doctor/Check.h"
#include "tool/doctor/Options.h"
#include "tool/doctor/trial/Findings.h"
#include "tool/doctor/trial/Record.h"

namespace tool::doctor {

// The products of the module, and what the checking bridge, or the comparison of masks with interfaces, has to say of
// them. What keeps a module from being asked comes first.
Checks CheckModuleProducts(const Record& record, const std::vector<RuleFinding>& findings, bool isLeaving,
                           const Options& options);

}  // namespace tool::doctor
