#pragma once

#include "base/ModuleCall.h"
#include "values/AgentException.h"

namespace bridge {

// A module's interface. A module's agent exception keeps its code, whatever compiler built the module.
template <class Interface>
using ModuleInterface = ModulePointer<Interface, AgentException>;

}  // namespace bridge
