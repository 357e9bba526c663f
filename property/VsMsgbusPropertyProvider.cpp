#include "property/VsMsgbusPropertyProvider.h"

#include "base/Boundary.h"
#include "dispatcher/groups/PropertyGroup.h"
#include "msgbus/BridgeLog.h"
#include "property/CollectorTable.h"
#include "values/AgentException.h"
#include "values/AgentValues.h"
#include "values/DroppedText.h"

using corvane::ny::property_provider;
using corvane::ny::utils::exception;
using VsKit::CUniStream;

namespace {

// The plain function that the agent calls; `callbackData` is the property_provider that registered it.
int32_t ProvideProperties(ny_client_t* /*client*/, const char* productId, ny_property_bag_t* bag, void* callbackData) {
    return Guarded<int32_t>(NY_UNEXPECTED, [&]() -> int32_t {
        if (productId == nullptr || callbackData == nullptr) {
            return NY_UNEXPECTED;
        }
        auto& provider = *static_cast<property_provider*>(callbackData);
        return provider.provide(provider.Client(), productId, bag);
    });
}

}  // namespace

VsMsgbusPropertyProvider::VsMsgbusPropertyProvider(ny_client_t* agentClient) : property_provider(agentClient) {}

void VsMsgbusPropertyProvider::RegisterProduct(const std::string& productId) {
    registrations.Add(productId, [&] {
        property_provider* const provider = this;
        return agent::ny_property_register_provider_callback(Client(), productId.c_str(), ProvideProperties, provider);
    });
}

void VsMsgbusPropertyProvider::UnregisterProduct(const std::string& productId) {
    registrations.Remove(productId, [&] { return Unregister(productId); });
}

void VsMsgbusPropertyProvider::UnregisterAll() {
    registrations.Close([&](const std::string& productId) { return Unregister(productId); });
}

// The agent waits for the product's requests on other threads. A module that leaves from inside its collector must not
// have them wait for that collector.
int32_t VsMsgbusPropertyProvider::Unregister(const std::string& productId) {
    CUniStream wideId;
    wideId << productId;
    return CollectorTable().TurningOthersAway(
        wideId.Text(), [&] { return agent::ny_property_unregister_provider_callback(Client(), productId.c_str()); });
}

// Touches nothing of this object once the module was called: a module that leaves the bridge from inside its callback
// has it destroyed.
int32_t VsMsgbusPropertyProvider::provide(ny_client_t* /*agentClient*/, const std::string& productId,
                                          ny_property_bag_t* bag) {
    const auto failed = [&](CUniStream& text) -> CUniStream& {
        return text << L"Failed to add property in the property bag for product id " << productId;
    };
    return GuardedBy<exception>(
        static_cast<int32_t>(NY_UNEXPECTED),
        [&]() -> int32_t {
            const std::wstring wideId = WideFromNarrow(productId);
            CollectorTable().With(wideId, [bag](CTheCollectProperties& collector, auto&& wasRemoved) {
                collector.Collect(bag, wasRemoved);
            });
            DropText([&](CUniStream& text) { text << L"Property collection completed for product id " << wideId; });
            return NY_OK;
        },
        [&](const exception& failure) {
            CUniStream text;
            failed(text) << L", exception: [" << failure.Code() << L"]";
            WriteBridgeLog(text);
            return failure.Code();
        },
        [&]() -> int32_t {
            CUniStream text;
            failed(text) << L" due to unknown exception";
            WriteBridgeLog(text);
            return NY_UNEXPECTED;
        });
}
