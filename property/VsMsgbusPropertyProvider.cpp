#include "property/VsMsgbusPropertyProvider.h"

#include "base/Boundary.h"
#include "dispatcher/groups/PropertyGroup.h"
#include "msgbus/BridgeLog.h"
#include "property/CollectorTable.h"
#include "values/AgentException.h"
#include "values/DroppedText.h"
#include "values/WideText.h"

using corvane::ny::property_provider;
using corvane::ny::utils::exception;
using VsKit::CUniStream;

namespace {

int32_t ProvideProperties(ny_client_t* /*client*/, const char* productId, ny_property_bag_t* bag, void* callbackData) {
    return CallHandler<property_provider>(productId, callbackData, [&](property_provider& provider) {
        return provider.provide(provider.Client(), productId, bag);
    });
}

}  // namespace

VsMsgbusPropertyProvider::VsMsgbusPropertyProvider(ny_client_t* agentClient)
    : AgentService(agentClient), property_provider(agentClient) {}

VsMsgbusPropertyProvider::~VsMsgbusPropertyProvider() = default;

int32_t VsMsgbusPropertyProvider::RegisterWithAgent(const std::string& productId) {
    property_provider* const provider = this;
    return agent::ny_property_register_provider_callback.In(Libraries())(Client(), productId.c_str(), ProvideProperties,
                                                                         provider);
}

int32_t VsMsgbusPropertyProvider::UnregisterFromAgent(const std::string& productId) {
    return agent::ny_property_unregister_provider_callback.In(Libraries())(Client(), productId.c_str());
}

int32_t VsMsgbusPropertyProvider::provide(ny_client_t* /*agentClient*/, const std::string& productId,
                                          ny_property_bag_t* bag) {
    const auto failed = [&](CUniStream& text) -> CUniStream& {
        return text << L"Failed to add property in the property bag for product id " << productId;
    };
    return GuardedBy<exception>(
        static_cast<int32_t>(NY_UNEXPECTED),
        [&]() -> int32_t {
            const WideText wideId(productId, Libraries());
            CollectorTable().With(wideId.View(), [&](CTheCollectProperties& collector, auto&& wasRemoved) {
                collector.Collect(bag, Libraries(), wasRemoved);
            });
            DropText(
                [&](CUniStream& text) { text << L"Property collection completed for product id " << wideId.View(); });
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
