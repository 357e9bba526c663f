#include <cstdarg>

#include "base/Boundary.h"
#include "dispatcher/AgentCalls.h"
#include "dispatcher/groups/LoggerGroup.h"
#include "msgbus/client/AgentUse.h"
#include "msgbus/client/NyClient.h"

namespace bridge {

namespace {

// Where a client's lines go.
struct LineTaker {
    LogLineSink callback;
    void* userData;
    ny_logger_t* logger;
};

LineTaker TakerOf(const NyClient& client) noexcept {
    return {client.log.sink, client.log.userData, client.log.sink == nullptr ? client.logger : nullptr};
}

int32_t Deliver(const LineTaker& taker, uint32_t severity, const char* module, const char* message) noexcept {
    if (taker.callback != nullptr) {
        return taker.callback(severity, module, message, taker.userData);
    }
    if (taker.logger != nullptr) {
        // The text is an argument: percent signs in it are printed, not interpreted.
        return agent::ny_log(taker.logger, severity, module, "", 0, "", "%s", message);
    }
    return NY_OK;
}

}  // namespace

int32_t NyClientLog(NyClient* client, uint32_t severity, const char* module, const char* format, ...) noexcept {
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    va_list arguments{};
    va_start(arguments, format);
    const FormattedLine line(format, arguments);
    va_end(arguments);
    return Deliver(TakerOf(*client), severity, module, line.Text());
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
    LineTaker taker{};
    // The thread returns into the agent's library.
    std::shared_ptr<AgentSession> session;
    {
        // A late call may come to a new client at an old one's address, which does not know yet where its lines go.
        const ScopedLock guard(client->lock);
        taker = TakerOf(*client);
        session = client->session;
    }
    return Guarded<int32_t>(NY_UNEXPECTED, [&] { return Deliver(taker, severity, module, message); });
}

}  // namespace bridge
