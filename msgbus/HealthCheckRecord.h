#pragma once

#include <map>
#include <string>

#include "VsMsgbus/LogSink.h"

struct VsMsgbusClientRecord;

// What a module hands over to be asked for its health.
using HealthCheckCallback = void (*)();

// The process's health-check record: created by the first Entry that starts the bridge instance, never freed.
struct HealthCheckRecord {
    std::string productId;                         // of the Entry that last started the bridge instance
    VsKitMsgbus::ILogSink* logSink = nullptr;      // as that Entry gave it
    VsMsgbusClientRecord* clientRecord = nullptr;  // null while there is no bridge instance
    std::map<std::string, HealthCheckCallback> callbacks;
};
