#include "policy/VsMsgbusPolicyEnforcer.h"

#include "dispatcher/groups/PolicyGroup.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/LoggedCallback.h"
#include "policy/CTheEnforcePolicy.h"
#include "policy/PolicyHandles.h"
#include "values/AgentException.h"
#include "values/UnloggedText.h"
#include "values/WideText.h"

namespace bridge {

using corvane::ny::policies::policy_notification_handler;
using VsKit::CUniStream;

namespace {

// Every kind of notification that the agent has.
constexpr uint32_t notificationMask = 63;

int32_t NotifyOfPolicies(ny_client_t* /*client*/, const char* productId, ny_policy_uri_t* uri, void* callbackData) {
    return CallHandler<policy_notification_handler>(productId, callbackData, [&](auto& service) {
        PolicyUriOwner owned;
        ny_policy_uri_t** const place = owned.Out(service.Libraries());
        Check(agent::ny_policy_uri_add_ref.In(service.Libraries())(uri));
        *place = uri;
        return service.on_notification(service.Client(), productId, owned.Get());
    });
}

// Whether the product has an enforcer.
bool Enforce(ny_client_t* client, const WideText& productId) {
    return EnforcerTable().With(productId.View(), [&](CTheEnforcePolicy& record, auto&& wasRemoved) {
        record.Enforce(client, productId.Get(), wasRemoved);
    });
}

}  // namespace

VsMsgbusPolicyEnforcer::~VsMsgbusPolicyEnforcer() = default;

int32_t VsMsgbusPolicyEnforcer::RegisterWithAgent(const std::string& productId) {
    return agent::ny_policy_register_notification_callback.In(Libraries())(
        Client(), productId.c_str(), notificationMask, NotifyOfPolicies, CallbackArgument());
}

int32_t VsMsgbusPolicyEnforcer::UnregisterFromAgent(const std::string& productId) {
    return agent::ny_policy_unregister_notification_callback.In(Libraries())(Client(), productId.c_str());
}

int32_t VsMsgbusPolicyEnforcer::on_notification(ny_client_t* agentClient, const std::string& productId,
                                                ny_policy_uri_t* /*uri*/) {
    return RunLogged(
        [&] {
            const WideText wideId(productId, Libraries());
            if (Enforce(agentClient, wideId)) {
                ComposeUnlogged(
                    [&](CUniStream& text) { text << L"Policy collection completed for product id " << wideId.View(); });
            } else {
                CUniStream text;
                text << L"Policy collection was not completed for product id " << wideId.View();
                WriteBridgeLog(text);
            }
        },
        [&](CUniStream& text) { text << L"Failed to get the policy for product id " << productId; });
}

}  // namespace bridge
