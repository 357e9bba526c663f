// The health-check export.
#include "VsMsgbus/HealthCheck.h"

#include <string>

#include "base/Boundary.h"
#include "msgbus/instance/HealthCheckRecord.h"

void VsKitHealthCheckRegisterCB(const wchar_t* name, VsKitHealthCheckCallback callback) noexcept {
    if (name == nullptr || callback == nullptr) {
        return;
    }
    Guarded([&] {
        // No conversion: each unit keeps its low 8 bits, and names that differ elsewhere are one.
        std::string key;
        for (const wchar_t* unit = name; *unit != L'\0'; ++unit) {
            key.push_back(static_cast<char>(*unit & 0xFF));
        }
        KeepHealthCheckCallback(key, callback);
    });
}
