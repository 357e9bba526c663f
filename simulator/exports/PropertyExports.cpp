// ny_client.dll: properties.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_property_register_provider_callback(ny_client_t* client, const char* productId,
                                               ny_property_provider_t provider, void* callbackData) {
    return ny_core_property_register_provider_callback(client, productId, provider, callbackData);
}

int32_t ny_property_unregister_provider_callback(ny_client_t* client, const char* productId) {
    return ny_core_property_unregister_provider_callback(client, productId);
}

int32_t ny_property_bag_add_property(ny_property_bag_t* bag, const char* path, const char* name, ny_variant_t* value) {
    return ny_core_property_bag_add_property(bag, path, name, value);
}
