// ny_msgbus.dll. Compiled once for each build, because of its version.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_msgbus_get_version(uint32_t* out) {
    return ny_core_msgbus_get_version(out, AGENT_VERSION);
}

int32_t ny_msgbus_disable_watcher(ny_msgbus_t* bus) {
    return ny_core_msgbus_disable_watcher(bus);
}
