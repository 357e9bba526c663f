// The information exports.
#include "VsMsgbus/Information.h"

#include <string>

#include "base/Boundary.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/instance/VsMsgbus.h"
#include "msgbus/lpc_buffer.h"
#include "services/AgentInformation.h"
#include "services/ServiceFailure.h"

using namespace bridge;
using VsKit::CUniStream;
using VsKitMsgbus::lpc_buffer;
using VsKitMsgbus::StoreText;

namespace {

void LogReading(const char* key, const KeyReading& reading) {
    if (reading.release != NY_OK) {
        CUniStream text;
        text << L"Unable to release ny variant for " << key << L" excpetion: " << reading.release;
        WriteBridgeLog(text);
    }
    if (reading.read != NY_OK) {
        CUniStream text;
        text << L"Failed to get ny info, excpetion:[" << reading.read << L"]";
        WriteBridgeLog(text);
    }
}

}  // namespace

int32_t VsKitMsgbusGetInformation(unsigned int index, lpc_buffer* out) noexcept {
    if (out == nullptr) {
        return 0;
    }
    out->Release();
    if (CurrentBridge() == nullptr) {
        return 0;
    }
    return Guarded<int32_t>(0, [&] { return StoreInformation(index, *out) ? 1 : 0; });
}

int32_t VsKitMsgbusGetInfoByKeyName(const char* key, lpc_buffer* out) noexcept {
    if (key == nullptr || out == nullptr) {
        return serviceFailure;
    }
    out->Release();
    if (CurrentBridge() == nullptr) {
        return serviceFailure;
    }
    return Guarded(serviceFailure, [&] {
        const KeyReading reading = ReadKey(key);
        if (reading.lookUp != NY_OK) {
            return reading.lookUp;
        }
        LogReading(key, reading);
        return StoreText(*out, reading.text) ? 0 : serviceFailure;
    });
}

int32_t VsKitMsgbusManagedMode(unsigned int* mode) noexcept {
    if (mode == nullptr || CurrentBridge() == nullptr) {
        return 0;
    }
    return Guarded<int32_t>(0, [&]() -> int32_t {
        const std::string text = ReadInformation(VsMsgbusInformationAgentMode);
        if (text == "0" || text == "1" || text == "2") {
            *mode = static_cast<unsigned int>(text[0] - '0');
        }
        return text.empty() ? 0 : 1;
    });
}
