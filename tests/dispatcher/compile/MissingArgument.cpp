// Does not compile: the agent's prototype takes one argument more.
#include "dispatcher/groups/InfoGroup.h"

int32_t Ask(ny_client_t* client) {
    return bridge::agent::ny_info_get(client, "key");
}
