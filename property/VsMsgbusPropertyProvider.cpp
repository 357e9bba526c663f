#include "property/VsMsgbusPropertyProvider.h"

#include "dispatcher/groups/PropertyGroup.h"
#include "msgbus/LoggedCallback.h"
#include "property/CTheCollectProperties.h"
#include "values/UnloggedText.h"
#include "values/WideText.h"

namespace bridge {

using corvane::ny::property_provider;
using VsKit::CUniStream;

namespace {

int32_t ProvideProperties(ny_client_t* /*client*/, const char* productId, ny_property_bag_t* bag, void* callbackData) {
    return CallHandler<property_provider>(
        productId, callbackData, [&](auto& service) { return service.provide(service.Client(), productId, bag); });
}

}  // namespace

VsMsgbusPropertyProvider::~VsMsgbusPropertyProvider() = default;

int32_t VsMsgbusPropertyProvider::RegisterWithAgent(const std::string& productId) {
    return agent::ny_property_register_provider_callback.In(Libraries())(Client(), productId.c_str(), ProvideProperties,
                                                                         CallbackArgument());
}

int32_t VsMsgbusPropertyProvider::UnregisterFromAgent(const std::string& productId) {
    return agent::ny_property_unregister_provider_callback.In(Libraries())(Client(), productId.c_str());
}

int32_t VsMsgbusPropertyProvider::provide(ny_client_t* /*agentClient*/, const std::string& productId,
                                          ny_property_bag_t* bag) {
    return RunLogged(
        [&] {
            const WideText wideId(productId, Libraries());
            CollectorTable().With(wideId.View(), [&](CTheCollectProperties& collector, auto&& wasRemoved) {
                collector.Collect(bag, Libraries(), wasRemoved);
            });
            ComposeUnlogged(
                [&](CUniStream& text) { text << L"Property collection completed for product id " << wideId.View(); });
        },
        [&](CUniStream& text) { text << L"Failed to add property in the property bag for product id " << productId; });
}

}  // namespace bridge
