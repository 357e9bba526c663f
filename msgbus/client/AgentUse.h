#pragma once

#include <chrono>
#include <memory>
#include <optional>

#include "agent/ny_agent.h"
#include "base/CallGate.h"
#include "dispatcher/LibrariesInUse.h"

namespace bridge {

// One client of the agent's, from before its creation to its release. Every thread inside the agent shares it. The last
// thread out releases the client, through the function of the libraries that made it, and then the libraries; never
// inside a call from the agent, because the agent may wait in the release until its calls have returned.
class AgentSession {
public:
    // With the libraries that are open now, without a client yet. Raises std::bad_alloc.
    static std::shared_ptr<AgentSession> Make();

    AgentSession() noexcept = default;
    ~AgentSession();
    AgentSession(const AgentSession&) = delete;
    AgentSession& operator=(const AgentSession&) = delete;

    // Gives the session its client, and the function that releases it, which may be null.
    void Own(ny_client_t* created, int32_t (*releaseFunction)(ny_client_t* client)) noexcept;

    ny_client_t* Client() const noexcept { return client; }
    const LibrariesInUse* Libraries() const noexcept { return libraries.get(); }
    // Closed when the client is about to be stopped.
    CallGate& Gate() noexcept { return gate; }

private:
    ny_client_t* client = nullptr;
    int32_t (*release)(ny_client_t* client) = nullptr;
    std::shared_ptr<LibrariesInUse> libraries;
    CallGate gate;
};

// From now on uses are of this session, whose client was started.
void OpenAgent(std::shared_ptr<AgentSession> session) noexcept;

// From now on no AgentUse of this client begins. Waits at most 15 seconds until those on other threads have ended, so
// that they end with the agent that they began with. Does not wait inside a call from the agent. Does nothing for a
// client that is not open.
void CloseAgent(const ny_client_t* client) noexcept;

// The session that is open, if it is this client's; else null.
std::shared_ptr<AgentSession> ShareSession(const ny_client_t* client) noexcept;

// Marks the calling thread, while it lives, as inside a call to the agent that may last until the agent's callbacks on
// other threads have returned: to register, to unregister, and to start, stop or release a client.
class LongAgentCall {
public:
    LongAgentCall();

private:
    CallGate::Call call;
};

// How long a callback waits for its turn with a module's record while `threadInside` is inside that record: as long as
// the module takes. But while that thread is inside the agent, the agent may be waiting for the callback. Then it is a
// moment for a LongAgentCall, and 15 seconds for an AgentUse.
std::chrono::milliseconds PatienceWith(DWORD threadInside) noexcept;

// A use of the agent by a module's thread: while it lives, the agent's client is not released, nor its libraries
// unloaded. Every export that calls the agent holds one, for that call alone and never while a module is called.
class AgentUse {
public:
    // Of the session that is open.
    AgentUse() noexcept;

    // Test it first: false when no agent client runs, or when the one that runs is being stopped.
    explicit operator bool() const noexcept { return call.has_value() && static_cast<bool>(*call); }
    ny_client_t* Client() const noexcept { return session->Client(); }
    const LibrariesInUse* Libraries() const noexcept { return session->Libraries(); }
    const std::shared_ptr<AgentSession>& Session() const noexcept { return session; }

private:
    const std::shared_ptr<AgentSession> session;
    std::optional<CallGate::Call> call;
};

}  // namespace bridge
