#pragma once

#include "tool/doctor/Check.h"
#include "tool/doctor/Options.h"
#include "tool/doctor/checks/ModuleFileChecks.h"

namespace tool::doctor {

// Has the module tried in a process of its own with the checking bridge, see trial/ModuleTrial.h: whether it loads and
// enters, as which products with which masks and interfaces, and all that the checking bridge finds. Nothing is reached
// with a file that is not usable.
Checks CheckModuleTrial(const ModuleFileResult& file, const Options& options);

}  // namespace tool::doctor
