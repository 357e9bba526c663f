#include "msgbus/registrations/AgentService.h"

namespace bridge {

namespace {

// Runs `change()` unless the client is being stopped, and keeps it from being stopped meanwhile. Without a session
// there is nothing to keep it from.
template <class Change>
void UnlessStopping(AgentSession* session, const Change& change) {
    if (session == nullptr) {
        change();
        return;
    }
    const CallGate::Call call(session->Gate());
    if (call) {
        change();
    }
}

}  // namespace

// The client stays until the product is as it is wanted, also when a stop begins meanwhile: that stop then ends what it
// finds registered, and leaves the product to the thread that is in the agent for it.
void AgentService::RegisterProduct(const std::string& productId) {
    UnlessStopping(session.get(), [&] { registrations.Add(productId); });
}

void AgentService::UnregisterProduct(const std::string& productId) {
    UnlessStopping(session.get(), [&] { registrations.Remove(productId); });
}

int32_t AgentService::Register(const std::string& productId) {
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&] {
        const LongAgentCall longCall;
        // Before: the agent may call from inside.
        if (FindAgentCalls(CallbackData(), {}) == nullptr) {
            AdmitAgentCalls(CallbackData(), {}, weak_from_this().lock(), client);
        }
        AdmitAgentCalls(CallbackData(), productId, weak_from_this().lock(), client);
        const int32_t result = RegisterWithAgent(productId);
        if (result != NY_OK) {
            EndAgentCalls(CallbackData(), productId);
        }
        return result;
    });
}

int32_t AgentService::Unregister(const std::string& productId) {
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&] {
        const LongAgentCall longCall;
        const int32_t result = UnregisterFromAgent(productId);
        if (result == NY_OK) {
            EndAgentCalls(CallbackData(), productId);
        }
        return result;
    });
}

void AgentService::UnregisterAll() {
    EndAgentCalls(CallbackData(), {});
    registrations.Close();
}

}  // namespace bridge
