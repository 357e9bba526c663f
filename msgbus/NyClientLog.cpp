#include <cstdarg>
#include <cstdio>

#include "dispatcher/groups/LoggerGroup.h"
#include "msgbus/NyClient.h"

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
    return NyClientAgentLog(severity, module, line, client);
}

int32_t NyClientAgentLog(uint32_t severity, const char* module, const char* message, void* userData) noexcept {
    auto* const client = static_cast<NyClient*>(userData);
    if (client == nullptr) {
        return NY_INVALID_ARGUMENT;
    }
    if (client->logCallback != nullptr) {
        return client->logCallback(severity, module, message, client->logUserData);
    }
    if (client->logger != nullptr) {
        // The text is an argument: percent signs in it are printed, not interpreted.
        return agent::ny_log(client->logger, severity, module, "", 0, "", "%s", message);
    }
    return NY_OK;
}
