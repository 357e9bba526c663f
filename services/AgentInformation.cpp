#include "services/AgentInformation.h"

#include <iterator>

#include "dispatcher/groups/InfoGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/client/AgentUse.h"
#include "values/AgentException.h"
#include "values/AgentHandle.h"
#include "values/AgentTexts.h"

namespace bridge {

namespace {

// The agent's keys, in the order of VsKitMsgbusGetInformation's index.
constexpr const char* keys[] = {
    "AgentMode",   "GUID",    "LogLocation", "RdxServerLastUsed",    "RdxPortLastUsed", "RdxServerList",
    "RdxPortList", "Version", "LastASCTime", "LastPolicyUpdateTime", "CryptoMode",
};

// The use of the agent ends with this function, before the caller logs a failure: the log sink is a module's, and no
// module may be called during a use of the agent.
std::string ReadText(const char* key) {
    const AgentUse agentUse;
    if (!agentUse) {
        throw AgentException(NY_FUNCTION_MISSING);
    }
    VariantOwner variant;
    Check(agent::ny_info_get.In(agentUse.Libraries())(agentUse.Client(), key, variant.Out(agentUse.Libraries())));
    return NarrowFromVariant(variant.Get(), agentUse.Libraries());
}

}  // namespace

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

std::string ReadInformation(unsigned int index) {
    if (index >= std::size(keys)) {
        return {};
    }
    try {
        return ReadText(keys[index]);
    } catch (const AgentException& failure) {
        VsKit::CUniStream text;
        text << L"Failed to get the agent info, excpetion:[" << failure.Code() << L"]";
        WriteBridgeLog(text);
        return {};
    }
}

}  // namespace bridge
