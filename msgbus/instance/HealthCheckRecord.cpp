#include "msgbus/instance/HealthCheckRecord.h"

#include "base/Mutex.h"
#include "base/NoDestroyAtExit.h"

namespace bridge {

namespace {

Mutex recordLock;
NoDestroyAtExit<std::unique_ptr<HealthCheckRecord>> keptRecord GUARDED_BY(recordLock);

}  // namespace

void RecordForHealthCheck(const char* productId, VsKitMsgbus::ILogSink* logSink, VsMsgbusClientRecord* clientRecord) {
    const ScopedLock guard(recordLock);
    if (*keptRecord == nullptr) {
        *keptRecord = std::make_unique<HealthCheckRecord>();
    }
    (*keptRecord)->clientRecord = clientRecord;
    (*keptRecord)->logSink = logSink;
    (*keptRecord)->productId = productId;
}

void ForgetClientForHealthCheck(const VsMsgbusClientRecord* clientRecord) {
    const ScopedLock guard(recordLock);
    if (*keptRecord != nullptr && (*keptRecord)->clientRecord == clientRecord) {
        (*keptRecord)->clientRecord = nullptr;
    }
}

void KeepHealthCheckCallback(const std::string& name, VsKitHealthCheckCallback callback) {
    const ScopedLock guard(recordLock);
    if (*keptRecord != nullptr) {
        (*keptRecord)->callbacks.insert_or_assign(name, callback);
    }
}

std::unique_ptr<HealthCheckRecord> CopyHealthCheckRecord() {
    const ScopedLock guard(recordLock);
    return *keptRecord != nullptr ? std::make_unique<HealthCheckRecord>(**keptRecord) : nullptr;
}

}  // namespace bridge
