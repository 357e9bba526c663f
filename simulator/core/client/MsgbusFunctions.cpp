// The message bus.
#include "simulator/core/client/Client.h"
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"

using namespace simulator;

int32_t ny_core_msgbus_get_version(uint32_t* out, uint32_t version) {
    return Simulate("ny_msgbus_get_version", [&] {
        Require(out != nullptr);
        *out = version;
    });
}

int32_t ny_core_msgbus_disable_watcher(ny_msgbus_t* bus) {
    return Simulate("ny_msgbus_disable_watcher", [&] { static_cast<void>(Handles().Get(bus)); });
}
