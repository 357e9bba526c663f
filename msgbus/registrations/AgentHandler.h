#pragma once

#include <memory>

#include "msgbus/client/AgentUse.h"

// What everything that answers the agent knows of it: the client that it was registered with, and that client's
// session, which it keeps for as long as it is there. None of the bridge's for a client that is not open.
class AgentHandler {
public:
    explicit AgentHandler(ny_client_t* agentClient) : client(agentClient), session(ShareSession(agentClient)) {}
    virtual ~AgentHandler() = default;
    AgentHandler(const AgentHandler&) = delete;
    AgentHandler& operator=(const AgentHandler&) = delete;

    ny_client_t* Client() const noexcept { return client; }
    // The libraries that the agent calls from; null without a session.
    const LibrariesInUse* Libraries() const noexcept { return session != nullptr ? session->Libraries() : nullptr; }

private:
    ny_client_t* const client;
    const std::shared_ptr<AgentSession> session;
};
