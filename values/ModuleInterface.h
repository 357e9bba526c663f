#pragma once

#include "base/ModuleCall.h"
#include "values/AgentException.h"

// A module's interface. A module's agent exception keeps its code, whatever compiler built the module.
template <class Interface>
using ModuleInterface = ModulePointer<Interface, corvane::ny::utils::exception>;
