#include "simulator/core/property/PropertyRequest.h"

#include <utility>

#include "ny_simulator.h"
#include "simulator/core/frame/Guarded.h"
#include "simulator/core/handles/HandleTable.h"

namespace simulator {

PropertyRequest::PropertyRequest(std::shared_ptr<Client> askedClient, Provider askedProvider)
    : client(std::move(askedClient)), provider(std::move(askedProvider)) {}

void PropertyRequest::Run() noexcept {
    answer = Guarded("property request", [this] {
        if (const int32_t code = Ask(); code != NY_OK) {
            throw Failure{code};
        }
    });
    answered.Set();
}

int32_t PropertyRequest::Ask() {
    const CallbackPass pass(provider->gate);
    if (!pass) {
        return NY_SIM_NOT_REGISTERED;
    }
    HandleTable& handles = Handles();
    const auto bag = std::make_shared<PropertyBag>();
    auto* const handle = handles.Own<ny_property_bag_t>(bag);
    const PropertyProvider& callback = provider->callbacks;
    const int32_t code = callback.call(client->handle, provider->productId.c_str(), handle, callback.callbackData);
    handles.Release(handle);
    properties = bag->Properties();
    return code;
}

}  // namespace simulator
