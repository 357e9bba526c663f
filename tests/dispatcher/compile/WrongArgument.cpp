// Does not compile: the agent's prototype takes narrow text.
#include "dispatcher/groups/InfoGroup.h"

int32_t Ask(ny_client_t* client, ny_variant_t** value) {
    return bridge::agent::ny_info_get(client, L"key", value);
}
