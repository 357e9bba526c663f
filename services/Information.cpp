// The information exports.
#include "VsMsgbus/Information.h"

#include <iterator>
#include <string>

#include "base/Boundary.h"
#include "dispatcher/groups/InfoGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/client/AgentUse.h"
#include "msgbus/instance/VsMsgbus.h"
#include "msgbus/lpc_buffer.h"
#include "services/ServiceFailure.h"
#include "values/AgentException.h"
#include "values/AgentHandle.h"
#include "values/AgentTexts.h"
#include "values/WideText.h"

using namespace bridge;
using VsKit::CUniStream;
using VsKitMsgbus::lpc_buffer;
using VsKitMsgbus::StoreText;

namespace {

// The agent's keys, in the order of VsKitMsgbusGetInformation's index.
constexpr const char* keys[] = {
    "AgentMode",   "GUID",    "LogLocation", "RdxServerLastUsed",    "RdxPortLastUsed", "RdxServerList",
    "RdxPortList", "Version", "LastASCTime", "LastPolicyUpdateTime", "CryptoMode",
};

std::string ReadText(const AgentUse& agentUse, const char* key) {
    if (!agentUse) {
        throw AgentException(NY_FUNCTION_MISSING);
    }
    VariantOwner variant;
    Check(agent::ny_info_get.In(agentUse.Libraries())(agentUse.Client(), key, variant.Out(agentUse.Libraries())));
    return NarrowFromVariant(variant.Get(), agentUse.Libraries());
}

// Gives the text of the key to `take(text, libraries)`, which throws nothing, and returns its answer. False, with a
// line in the log, when the agent fails; false as well for an index that names no key.
template <class Take>
bool TakeText(unsigned int index, const Take& take) {
    if (index >= std::size(keys)) {
        return false;
    }
    try {
        const AgentUse agentUse;
        // First: it throws when there is no agent, and then there are no libraries either.
        const std::string text = ReadText(agentUse, keys[index]);
        return take(text, agentUse.Libraries());
    } catch (const AgentException& failure) {
        // The use has ended: no thread is inside the agent while it calls a module's sink.
        CUniStream text;
        text << L"Failed to get the agent info, excpetion:[" << failure.Code() << L"]";
        WriteBridgeLog(text);
        return false;
    }
}

// The agent's answers to a question for one key: a code for each step, NY_OK for a step that was not needed.
struct KeyReading {
    int32_t lookUp = 0;
    int32_t read = 0;
    int32_t release = 0;
    std::string text;  // empty unless the first two went well
};

// An agent that is not there fails the look-up with NY_FUNCTION_MISSING.
KeyReading ReadKey(const char* key) {
    KeyReading reading;
    const AgentUse agentUse;
    VariantOwner variant;
    if (!agentUse || FindRelease(variant.Get(), agentUse.Libraries()) == nullptr) {
        reading.lookUp = NY_FUNCTION_MISSING;
        return reading;
    }
    const auto get = agent::ny_info_get.In(agentUse.Libraries());
    reading.lookUp = get(agentUse.Client(), key, variant.Out(agentUse.Libraries()));
    if (reading.lookUp != NY_OK) {
        return reading;
    }
    const char* text = nullptr;
    size_t length = 0;
    reading.read = agent::ny_variant_get_string.In(agentUse.Libraries())(variant.Get(), &text, &length);
    if (reading.read == NY_OK && text != nullptr) {
        reading.text.assign(text, length);
    }
    reading.release = variant.Reset();
    return reading;
}

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
    return Guarded<int32_t>(0, [&]() -> int32_t {
        return TakeText(index, [out](const std::string& text, const LibrariesInUse* libraries) {
            return !text.empty() && Guarded(false, [&] { return StoreText(*out, WideText(text, libraries).View()); });
        });
    });
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
        return TakeText(VsMsgbusInformationAgentMode,
                        [mode](const std::string& text, const LibrariesInUse* /*libraries*/) {
                            if (text == "0" || text == "1" || text == "2") {
                                *mode = static_cast<unsigned int>(text[0] - '0');
                            }
                            return !text.empty();
                        });
    });
}
