#include <cstdarg>
#include <cstdio>
#include <mutex>

#include "base/Boundary.h"
#include "dispatcher/AgentCalls.h"
#include "dispatcher/groups/LoggerGroup.h"
#include "msgbus/AgentUse.h"
#include "msgbus/NyClient.h"

namespace {

int32_t Deliver(NyClient& client, uint32_t severity, const char* module, const char* message) noexcept {
    if (client.logCallback != nullptr) {
        return client.logCallback(severity, module, message, client.logUserData);
    }
    if (client.logger != nullptr) {
        // The text is an argument: percent signs in it are printed, not interpreted.
        return agent::ny_log(client.logger, severity, module, "", 0, "", "%s", message);
    }
    return NY_OK;
}

// The thread returns into the agent's library.
std::shared_ptr<AgentSession> ShareSessionOf(NyClient& client) noexcept {
    const std::lock_guard guard(client.lock);
    return client.session;
}

}  // namespace

int32_t NyClientLog(NyClient* client, uint32_t severity, const char* module, const char* format, ...) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    char line[logLineCapacity] = {};
    va_list arguments{};
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    line[sizeof line - 1] = '\0';
    return Deliver(*client, severity, module, line);
}

int32_t NyClientAgentLog(uint32_t severity, const char* module, const char* message, void* userData) noexcept {
    auto* const client = static_cast<NyClient*>(userData);
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    const AgentCall call(CallData<NyClient>(client), {});
    if (!call) {
        return NY_UNEXPECTED;
    }
    const std::shared_ptr<AgentSession> session = ShareSessionOf(*client);
    return Guarded<int32_t>(NY_UNEXPECTED, [&] { return Deliver(*client, severity, module, message); });
}
