#include "msgbus/registrations/AgentService.h"

#include <optional>

namespace bridge {

namespace {

// Keeps the client from being stopped during a call. Without a session there is nothing to keep it from.
class ClientStays {
public:
    explicit ClientStays(AgentSession* session) {
        if (session != nullptr) {
            call.emplace(session->Gate());
        }
    }
    explicit operator bool() const noexcept { return !call.has_value() || static_cast<bool>(*call); }

private:
    std::optional<CallGate::Call> call;
};

}  // namespace

// The client stays until the product is as it is wanted, also when a stop begins meanwhile: that stop then ends what it
// finds registered, and leaves the product to the thread that is at it.
void AgentService::RegisterProduct(const std::string& productId) {
    const ClientStays stays(session.get());
    if (stays) {
        registrations.Add(productId);
    }
}

void AgentService::UnregisterProduct(const std::string& productId) {
    const ClientStays stays(session.get());
    if (stays) {
        registrations.Remove(productId);
    }
}

int32_t AgentService::Register(const std::string& productId) {
    return Guarded<int32_t>(NY_OUT_OF_MEMORY, [&] {
        const LongAgentCall longCall;
        // Before: the agent may call from inside.
        AdmitAgentCalls(CallbackData(), {}, weak_from_this().lock(), client);
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
