#pragma once

#include <cstdint>

#include "msgbus/client/AgentCallbacks.h"
#include "msgbus/client/NyClient.h"

// The way from the bridge instance to its agent client. Releases the client when it owns it.
struct VsMsgbusClientRecord {
    VsMsgbusClientRecord() = default;
    ~VsMsgbusClientRecord() {
        if (isOwned != 0) {
            bridge::NyClientRelease(client);
        }
    }
    VsMsgbusClientRecord(const VsMsgbusClientRecord&) = delete;
    VsMsgbusClientRecord& operator=(const VsMsgbusClientRecord&) = delete;

    bridge::NyClient* client = nullptr;
    uint8_t isOwned = 0;
    corvane::ny::client_logger* logger = nullptr;
    uint64_t reserved = 0;
};
