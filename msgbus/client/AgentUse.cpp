#include "msgbus/client/AgentUse.h"

#include <utility>

#include "base/Boundary.h"
#include "base/NoDestroyAtExit.h"
#include "base/SharedSlot.h"
#include "dispatcher/AgentCalls.h"

namespace bridge {

namespace {

using SessionPointer = std::shared_ptr<AgentSession>;

NoDestroyAtExit<SharedSlot<AgentSession>> current;

CallGate& LongAgentCalls() noexcept {
    static NoDestroyAtExit<CallGate> gate;
    return *gate;
}

}  // namespace

std::shared_ptr<AgentSession> AgentSession::Make() {
    SessionPointer made(new AgentSession, DeleteOutsideAgentCalls<AgentSession>);
    made->libraries = LibrariesInUse::Share();
    return made;
}

AgentSession::~AgentSession() {
    if (release != nullptr) {
        Guarded([this] {
            const LongAgentCall longCall;
            release(client);
        });
    }
}

void AgentSession::Own(ny_client_t* created, int32_t (*releaseFunction)(ny_client_t* client)) noexcept {
    client = created;
    release = releaseFunction;
}

void OpenAgent(SessionPointer session) noexcept {
    current->Exchange(std::move(session));
}

void CloseAgent(const ny_client_t* client) noexcept {
    Guarded([&] {
        const auto isClients = [client](const AgentSession& session) { return session.Client() == client; };
        if (const SessionPointer closed = current->TakeIf(isClients)) {
            closed->Gate().Close();
            if (!AgentCall::IsUnderWay()) {
                closed->Gate().WaitForOthers();
            }
        }
    });
}

std::shared_ptr<AgentSession> ShareSession(const ny_client_t* client) noexcept {
    SessionPointer session = current->Share();
    return session != nullptr && session->Client() == client ? session : nullptr;
}

LongAgentCall::LongAgentCall() : call(LongAgentCalls()) {}

std::chrono::milliseconds PatienceWith(DWORD threadInside) noexcept {
    constexpr std::chrono::milliseconds moment = 2 * CallGate::patienceInterval;
    if (LongAgentCalls().IsInside(threadInside)) {
        return moment;
    }
    const auto isInside = [threadInside](AgentSession& session) { return session.Gate().IsInside(threadInside); };
    const bool isUsingAgent = current->Satisfies(isInside);
    return isUsingAgent ? callWaitLimit : CallGate::withoutLimit;
}

AgentUse::AgentUse() noexcept : session(current->Share()) {
    if (session != nullptr) {
        call.emplace(session->Gate());
    }
}

}  // namespace bridge
