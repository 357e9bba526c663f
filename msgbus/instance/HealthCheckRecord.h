#pragma once

#include <map>
#include <memory>
#include <string>

#include "VsMsgbus/HealthCheck.h"
#include "VsMsgbus/LogSink.h"
#include "values/ModuleInterface.h"

struct VsMsgbusClientRecord;

namespace bridge {

// The process's health-check record: created by the first Entry that starts the bridge instance, never freed.
struct HealthCheckRecord {
    std::string productId;                                      // of the Entry that last started the bridge instance
    ModuleInterface<VsKitMsgbus::ILogSink> logSink = nullptr;   // as that Entry gave it
    VsMsgbusClientRecord* clientRecord = nullptr;               // null while there is no bridge instance
    std::map<std::string, VsKitHealthCheckCallback> callbacks;  // nothing calls them
};

// Enters in the record, which is created when there is none, what an Entry gave. Raises std::bad_alloc.
void RecordForHealthCheck(const char* productId, VsKitMsgbus::ILogSink* logSink, VsMsgbusClientRecord* clientRecord);

// The bridge instance with that record ends.
void ForgetClientForHealthCheck(const VsMsgbusClientRecord* clientRecord);

// Keeps a module's callback under that name, in the place of an older one. Does nothing while there is no record.
// Raises std::bad_alloc.
void KeepHealthCheckCallback(const std::string& name, VsKitHealthCheckCallback callback);

// A copy of the record as it is now; null while there is none.
std::unique_ptr<HealthCheckRecord> CopyHealthCheckRecord();

}  // namespace bridge
