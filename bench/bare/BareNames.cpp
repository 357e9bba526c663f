// What stands behind the names that no one calls.
#include <cstdint>

#include "agent/ny_agent.h"

extern "C" int32_t ny_agent_not_simulated(void);

int32_t ny_agent_not_simulated(void) {
    return NY_OK;
}
