// ny_client.dll: the updater.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_updater_register_callbacks(ny_client_t* client, const char* productId,
                                      const ny_updater_callbacks_t* callbacks, void* userData) {
    return ny_core_updater_register_callbacks(client, productId, callbacks, userData);
}

int32_t ny_updater_unregister_callbacks(ny_client_t* client, const char* productId) {
    return ny_core_updater_unregister_callbacks(client, productId);
}
