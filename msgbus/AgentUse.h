#pragma once

#include <memory>
#include <optional>

#include "agent/ny_agent.h"
#include "base/CallGate.h"

// A use of the agent by a module's thread: while it lives, the agent's client is not stopped, nor its libraries
// unloaded, under it. What every export that calls the agent holds, for that call alone and never while a module is
// called.
class AgentUse {
public:
    AgentUse();
    AgentUse(const AgentUse&) = delete;
    AgentUse& operator=(const AgentUse&) = delete;

    // Test it first: false when no agent client runs, or when the one that runs is being stopped.
    explicit operator bool() const noexcept { return call.has_value() && static_cast<bool>(*call); }
    ny_client_t* Client() const noexcept { return session->client; }

    // One agent client while it runs.
    struct Session {
        explicit Session(ny_client_t* startedClient) noexcept : client(startedClient) {}

        ny_client_t* const client;
        CallGate gate;
    };

private:
    const std::shared_ptr<Session> session;
    std::optional<CallGate::Call> call;
};

// From now on uses are of this client, which was started. False when memory ran out.
bool OpenAgent(ny_client_t* client) noexcept;

// No use of this client begins any more. Waits until those on other threads have ended, at most 15 seconds. Does
// nothing for a client that is not open.
void CloseAgent(const ny_client_t* client) noexcept;
