#pragma once

#include <cstdint>
#include <string>

#include "base/Boundary.h"
#include "dispatcher/AgentCalls.h"
#include "msgbus/client/AgentUse.h"
#include "msgbus/registrations/AgentRegistrations.h"
#include "msgbus/registrations/VsMsgbusIo.h"

namespace bridge {

// The base of every service object: a service whose products are registered with the agent one by one. A service says
// how it registers and unregisters one product, in `RegisterWithAgent` and `UnregisterFromAgent`, and answers the
// agent. It shares the session of its client; it has none when the client is not open.
//
// The agent may call for a product from before it is registered, because it may do so from inside its own registering,
// until its registration has ended, or until the agent's client is let go of, which forgets all calls of that client.
class AgentService : public VsMsgbusIo, private AgentRegistrations::Agent {
public:
    // Both do nothing once the client is being stopped: the stop unregisters what is left.
    void RegisterProduct(const std::string& productId) final;
    void UnregisterProduct(const std::string& productId) final;
    void UnregisterAll() final;

    ny_client_t* Client() const noexcept { return client; }
    // The libraries that the agent calls from; null without a session.
    const LibrariesInUse* Libraries() const noexcept { return session != nullptr ? session->Libraries() : nullptr; }

protected:
    explicit AgentService(ny_client_t* agentClient) noexcept
        : client(agentClient), session(ShareSession(agentClient)) {}

    // Each makes its one call of the agent and returns the agent's answer.
    virtual int32_t RegisterWithAgent(const std::string& productId) = 0;
    virtual int32_t UnregisterFromAgent(const std::string& productId) = 0;
    // The user data that the agent is given for its calls.
    virtual AgentCallData CallbackData() const noexcept = 0;

private:
    int32_t Register(const std::string& productId) final;
    int32_t Unregister(const std::string& productId) final;

    ny_client_t* const client;
    const std::shared_ptr<AgentSession> session;
    AgentRegistrations registrations{*this};
};

// A service that answers the agent as a Handler: the agent is given a pointer to the Handler as user data. Derived
// classes define their destructors in a source, because mingw-w64's linker finds inline ones twice in a program that is
// optimised as a whole.
template <class Handler>
class AgentServiceFor : public AgentService, public Handler {
public:
    explicit AgentServiceFor(ny_client_t* agentClient) noexcept : AgentService(agentClient) {}

protected:
    Handler* CallbackArgument() noexcept { return this; }

private:
    AgentCallData CallbackData() const noexcept final { return CallData<Handler>(static_cast<const Handler*>(this)); }
};

// The body of every plain function that the agent calls: `call(service)` of the service that was registered with
// `userData`, which is its Handler. NY_UNEXPECTED when the agent gives no product, when the product is not registered
// with that service, or not any more, and when `call` throws.
template <class Handler, class Call>
int32_t CallHandler(const char* productId, void* userData, Call&& call) noexcept {
    if (productId == nullptr) {
        return NY_UNEXPECTED;
    }
    const AgentCall agentCall(CallData<Handler>(userData), productId);
    if (!agentCall) {
        return NY_UNEXPECTED;
    }
    return Guarded<int32_t>(
        NY_UNEXPECTED, [&] { return call(static_cast<AgentServiceFor<Handler>&>(*static_cast<Handler*>(userData))); });
}

}  // namespace bridge
