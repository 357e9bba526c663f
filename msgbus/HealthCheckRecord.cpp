#include "msgbus/HealthCheckRecord.h"

#include <mutex>

#include "base/Mutex.h"

namespace {

Mutex recordLock;
std::unique_ptr<HealthCheckRecord> healthCheckRecord;

}  // namespace

void RecordForHealthCheck(const char* productId, VsKitMsgbus::ILogSink* logSink, VsMsgbusClientRecord* clientRecord) {
    const std::lock_guard guard(recordLock);
    if (healthCheckRecord == nullptr) {
        healthCheckRecord = std::make_unique<HealthCheckRecord>();
    }
    healthCheckRecord->clientRecord = clientRecord;
    healthCheckRecord->logSink = logSink;
    healthCheckRecord->productId = productId;
}

void ForgetClientForHealthCheck() {
    const std::lock_guard guard(recordLock);
    if (healthCheckRecord != nullptr) {
        healthCheckRecord->clientRecord = nullptr;
    }
}

void KeepHealthCheckCallback(const std::string& name, VsKitHealthCheckCallback callback) {
    const std::lock_guard guard(recordLock);
    if (healthCheckRecord != nullptr) {
        healthCheckRecord->callbacks[name] = callback;
    }
}

std::unique_ptr<HealthCheckRecord> CopyHealthCheckRecord() {
    const std::lock_guard guard(recordLock);
    return healthCheckRecord != nullptr ? std::make_unique<HealthCheckRecord>(*healthCheckRecord) : nullptr;
}
