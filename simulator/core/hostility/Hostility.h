// The ways in which a hostile agent breaks its contract.
#pragma once

#include "simulator/core/hostility/RegisterCalls.h"
#include "simulator/core/hostility/RememberedRegistrations.h"

namespace simulator {

struct Hostility {
    // Ends all hostility.
    void Clear();

    RegisterCalls registerCalls;
    RememberedRegistrations remembered;
};

// The one hostility of this process; lives as TheFrame does.
Hostility& TheHostility();

}  // namespace simulator
