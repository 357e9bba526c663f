// Control functions: the handles that users of the agent hold.
#include "ny_simulator.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"

using namespace simulator;

size_t ny_sim_live_handles(ny_sim_handle_kind kind) {
    return Handles().CountOwned(static_cast<HandleKind>(kind));
}

int32_t ny_core_handle_kind(const void* handle) {
    return static_cast<int32_t>(Handles().KindOf(handle));
}
