// Compiles: a name of the table, with the arguments of the agent's prototype.
#include "dispatcher/groups/InfoGroup.h"

extern "C" int32_t ny_info_events_register_callback(ny_client_t* client, void* callback);

int32_t Ask(ny_client_t* client, ny_variant_t** value) {
    constexpr bridge::EntryPoint<&::ny_info_events_register_callback, bridge::infoNames, bridge::infoGroup>
        registerCallback{};
    return bridge::agent::ny_info_get(client, "key", value) + registerCallback(client, nullptr);
}
