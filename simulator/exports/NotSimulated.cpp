// What stands behind the names that the agent exports and the simulated agent does nothing for.
#include "ny_simulator.h"

extern "C" int32_t ny_agent_not_simulated() {
    return NY_SIM_NOT_SIMULATED;
}
