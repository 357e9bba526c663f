#include "msgbus/AgentUse.h"

#include <mutex>
#include <utility>

#include "base/Boundary.h"
#include "base/Mutex.h"
#include "base/UntilUnloaded.h"
#include "dispatcher/AgentCalls.h"

namespace {

using SessionPointer = std::shared_ptr<AgentSession>;

Mutex currentLock;  // held for the copy or the exchange alone
UntilUnloaded<SessionPointer> current;

SessionPointer CurrentSession() noexcept {
    const std::lock_guard guard(currentLock);
    return *current;
}

SessionPointer TakeSession(const ny_client_t* client) noexcept {
    const std::lock_guard guard(currentLock);
    return *current != nullptr && (*current)->Client() == client ? std::exchange(*current, nullptr) : nullptr;
}

CallGate& LongAgentCalls() noexcept {
    static UntilUnloaded<CallGate> gate;
    return gate.Get();
}

void DeleteSession(void* session) noexcept {
    delete static_cast<AgentSession*>(session);
}

}  // namespace

std::shared_ptr<AgentSession> AgentSession::Make() {
    const auto end = [](AgentSession* ended) { RunOutsideAgentCalls(DeleteSession, ended); };
    SessionPointer made(new AgentSession, end);
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
    const std::lock_guard guard(currentLock);
    (*current).swap(session);
}

void CloseAgent(const ny_client_t* client) noexcept {
    Guarded([&] {
        if (const SessionPointer closed = TakeSession(client)) {
            closed->Gate().Close();
            if (!AgentCall::IsUnderWay()) {
                closed->Gate().WaitForOthers();
            }
        }
    });
}

std::shared_ptr<AgentSession> ShareSession(const ny_client_t* client) noexcept {
    SessionPointer session = CurrentSession();
    return session != nullptr && session->Client() == client ? session : nullptr;
}

LongAgentCall::LongAgentCall() : call(LongAgentCalls()) {}

std::chrono::milliseconds PatienceWith(DWORD threadInside) noexcept {
    constexpr std::chrono::milliseconds moment = 2 * CallGate::patienceInterval;
    if (LongAgentCalls().IsInside(threadInside)) {
        return moment;
    }
    const std::lock_guard guard(currentLock);
    const bool isUsingAgent = *current != nullptr && (*current)->Gate().IsInside(threadInside);
    return isUsingAgent ? callWaitLimit : CallGate::withoutLimit;
}

AgentUse::AgentUse() noexcept : session(CurrentSession()) {
    if (session != nullptr) {
        call.emplace(session->Gate());
    }
}
