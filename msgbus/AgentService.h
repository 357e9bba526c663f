#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "base/Boundary.h"
#include "base/CallGate.h"
#include "msgbus/AgentRegistrations.h"
#include "msgbus/VsMsgbusIo.h"
#include "values/CUniStream.h"

// What every service object is: a service whose products are registered with the agent one by one. A service says how
// it registers and unregisters one product, in `RegisterWithAgent` and `UnregisterFromAgent`, and answers the agent.
class AgentService : public VsMsgbusIo {
public:
    void RegisterProduct(const std::string& productId) final {
        registrations.Add(productId, [&] { return RegisterWithAgent(productId); });
    }
    void UnregisterProduct(const std::string& productId) final {
        registrations.Remove(productId, [&] { return UnregisterFromAgent(productId); });
    }
    void UnregisterAll() final {
        registrations.Close([this](const std::string& productId) { return UnregisterFromAgent(productId); });
    }

protected:
    // Both make the one agent call and return its answer.
    virtual int32_t RegisterWithAgent(const std::string& productId) = 0;
    virtual int32_t UnregisterFromAgent(const std::string& productId) = 0;

private:
    AgentRegistrations registrations;
};

// The threads on which the agent is calling the bridge, whatever the service.
CallGate& AgentCallbacks();

// What `unregister()` answers, which ends a product's registration with the agent. The agent waits there for the
// product's callbacks on other threads: a module that leaves from inside its own callback must not have them wait for
// that callback, so those that wait for their turn with the module's record in `table` are turned away meanwhile.
template <class Table, class Unregister>
int32_t UnregisterTurningAway(Table& table, const std::string& productId, Unregister&& unregister) {
    VsKit::CUniStream wideId;
    wideId << productId;
    return table.TurningOthersAway(wideId.Text(), std::forward<Unregister>(unregister));
}

// The body of every plain function that the agent calls: `call(handler)` of the handler that was registered as
// `userData`, which is a Handler. NY_UNEXPECTED when the agent gives no product or no handler, or when anything
// escapes.
template <class Handler, class Call>
int32_t CallHandler(const char* productId, void* userData, Call&& call) noexcept {
    if (productId == nullptr || userData == nullptr) {
        return NY_UNEXPECTED;
    }
    return Guarded<int32_t>(NY_UNEXPECTED, [&] {
        const CallGate::Call inside(AgentCallbacks());
        return call(*static_cast<Handler*>(userData));
    });
}
