// Does not compile: the agent has no function of this name.
#include "dispatcher/groups/InfoGroup.h"

int32_t Ask(ny_client_t* client, ny_variant_t** value) {
    return bridge::agent::ny_info_gett(client, "key", value);
}
