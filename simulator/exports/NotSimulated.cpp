// The one function behind all names that the agent exports and that are not simulated.
#include "ny_simulator.h"

extern "C" int32_t ny_agent_not_simulated() {
    return NY_SIM_NOT_SIMULATED;
}
