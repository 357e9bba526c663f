// Agent functions by which a product gives the agent its properties.
#include "simulator/core/client/Client.h"
#include "simulator/core/client/OnRegistered.h"
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/property/PropertyBag.h"

using namespace simulator;

int32_t ny_core_property_register_provider_callback(ny_client_t* client, const char* productId,
                                                    ny_property_provider_t provider, void* callbackData) {
    return Simulate("ny_property_register_provider_callback", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr && provider != nullptr);
        const AgentLockHold hold;
        OnRegistered(target, target->propertyProviders.Add(productId, {provider, callbackData}));
    });
}

int32_t ny_core_property_unregister_provider_callback(ny_client_t* client, const char* productId) {
    return Simulate("ny_property_unregister_provider_callback", [&] {
        const auto target = Handles().Get(client);
        Require(productId != nullptr);
        const AgentLockHold hold;
        target->propertyProviders.Remove(productId);
    });
}

int32_t ny_core_property_bag_add_property(ny_property_bag_t* bag, const char* path, const char* name,
                                          ny_variant_t* value) {
    return Simulate("ny_property_bag_add_property", [&] {
        const auto target = Handles().Get(bag);
        const auto content = Handles().Get(value);
        Require(path != nullptr && name != nullptr);
        // A property is a text: this refuses tables and arrays.
        static_cast<void>(TextOf(*content));
        target->Add({path, name, content});
    });
}
