// ny_msgbus.dll of the bare agent.
#include "agent/ny_agent.h"

int32_t ny_msgbus_get_version(uint32_t* out) {
    *out = 1;
    return NY_OK;
}

int32_t ny_msgbus_disable_watcher(ny_msgbus_t* /*bus*/) {
    return NY_OK;
}
