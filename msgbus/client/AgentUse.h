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
// inside a call of the agent's, because the agent may wait in the release until its calls have returned.
class AgentSession {
public:
    // With the libraries that are open now, without a client yet. Raises std::bad_alloc.
    static std::shared_ptr<AgentSession> Make();

    // A client that somebody else releases.
    explicit AgentSession(ny_client_t* lentClient = nullptr) noexcept : client(lentClient) {}
    ~AgentSession();
    AgentSession(const AgentSession&) = delete;
    AgentSession& operator=(const AgentSession&) = delete;

    // From now on the session has the client, and releases it with that function, null when there is none.
    void Own(ny_client_t* created, int32_t (*releaseFunction)(ny_client_t* client)) noexcept;

    ny_client_t* Client() const noexcept { return client; }
    const LibrariesInUse* Libraries() const noexcept { return libraries.get(); }
    // Closed when the client is about to be stopped.
    CallGate& Gate() noexcept { return gate; }

private:
    ny_client_t* client;
    int32_t (*release)(ny_client_t* client) = nullptr;
    std::shared_ptr<LibrariesInUse> libraries;
    CallGate gate;
};

// From now on uses are of this session, whose client was started.
void OpenAgent(std::shared_ptr<AgentSession> session) noexcept;

// No use of this client begins any more. Waits until those on other threads have ended, at most 15 seconds, so that
// they end with the agent that they began with; not at all inside a call of the agent's. Does nothing for a client that
// is not open.
void CloseAgent(const ny_client_t* client) noexcept;

// The session that is open, if it is this client's; else null.
std::shared_ptr<AgentSession> ShareSession(const ny_client_t* client) noexcept;

// A call of the agent's that may last until callbacks of the agent's on other threads are out: to register, to
// unregister, and to start, stop or release a client. While it lives, the calling thread is inside such a call.
class LongAgentCall {
public:
    LongAgentCall();

private:
    CallGate::Call call;
};

// How long a callback waits for its turn with a module's record while `threadInside` is inside that record. As long as
// the module takes; but the agent may be waiting for that callback when the thread inside is inside the agent: a moment
// in a long call, 15 seconds in a module's use of the agent.
std::chrono::milliseconds PatienceWith(DWORD threadInside) noexcept;

// A use of the agent by a module's thread: while it lives, the agent's client is not released, nor its libraries
// unloaded, under it. What every export that calls the agent holds, for that call alone and never while a module is
// called.
class AgentUse {
public:
    // Of the session that is open.
    AgentUse() noexcept;
    AgentUse(const AgentUse&) = delete;
    AgentUse& operator=(const AgentUse&) = delete;

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
