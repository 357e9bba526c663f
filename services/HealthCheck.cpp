// The health-check export.
#include "VsMsgbus/HealthCheck.h"

#include "base/Boundary.h"
#include "msgbus/instance/HealthCheckRecord.h"
#include "values/AgentTexts.h"

using namespace bridge;

void VsKitHealthCheckRegisterCB(const wchar_t* name, VsKitHealthCheckCallback callback) noexcept {
    if (name == nullptr || callback == nullptr) {
        return;
    }
    Guarded([&] { KeepHealthCheckCallback(LowBytes(name), callback); });
}
