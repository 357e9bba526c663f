#include "msgbus/AgentUse.h"

#include <mutex>
#include <utility>

#include "base/Boundary.h"
#include "base/Mutex.h"
#include "base/UntilUnloaded.h"

namespace {

using SessionPointer = std::shared_ptr<AgentUse::Session>;

Mutex currentLock;  // held for the copy or the exchange alone
UntilUnloaded<SessionPointer> current;

SessionPointer CurrentSession() {
    const std::lock_guard guard(currentLock);
    return *current;
}

SessionPointer TakeSession(const ny_client_t* client) {
    const std::lock_guard guard(currentLock);
    return *current != nullptr && (*current)->client == client ? std::exchange(*current, nullptr) : nullptr;
}

}  // namespace

AgentUse::AgentUse() : session(CurrentSession()) {
    if (session != nullptr) {
        call.emplace(session->gate);
    }
}

bool OpenAgent(ny_client_t* client) noexcept {
    return Guarded(false, [&] {
        auto opened = std::make_shared<AgentUse::Session>(client);
        const std::lock_guard guard(currentLock);
        (*current).swap(opened);
        return true;
    });
}

void CloseAgent(const ny_client_t* client) noexcept {
    Guarded([&] {
        if (const SessionPointer closed = TakeSession(client)) {
            closed->gate.Close();
            closed->gate.WaitForOthers();
        }
    });
}
