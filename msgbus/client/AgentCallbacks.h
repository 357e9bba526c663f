// The interfaces through which the agent's client calls back.
#pragma once

#include <cstddef>
#include <cstdint>

struct VsMsgbusClientRecord;

namespace corvane::ny {

// Told when the agent's client may start (type 1) or must stop (type 0). `record` is valid during the call.
class notification_handler {
public:
    virtual ~notification_handler() = default;
    virtual void OnNotification(VsMsgbusClientRecord& record, int32_t type) = 0;
};

// Takes the log lines of the agent and of the bridge's client.
class client_logger {
public:
    virtual ~client_logger() = default;
    virtual void Log(int32_t severity, const char* module, const char* message) = 0;
};

// Supplies the passphrase of the agent's message bus.
class passphrase_provider {
public:
    virtual ~passphrase_provider() = default;
    virtual int32_t GetPassphrase(unsigned char* passphrase, size_t* size) = 0;
};

}  // namespace corvane::ny
