#include "services/AgentInformation.h"

#include <iterator>
#include <utility>

#include "base/Boundary.h"
#include "dispatcher/groups/InfoGroup.h"
#include "dispatcher/groups/VariantGroup.h"
#include "msgbus/BridgeLog.h"
#include "msgbus/client/AgentUse.h"
#include "msgbus/lpc_buffer.h"
#include "values/AgentException.h"
#include "values/AgentHandle.h"
#include "values/AgentTexts.h"
#include "values/WideText.h"

namespace bridge {

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

// Gives the text of the key to `take(text, libraries)`, which throws nothing, and returns its answer. False,
// with a line in the log, when the agent fails; false as well for an index that names no key.
template <class Take>
bool TakeText(unsigned int index, const Take& take) {
    if (index >= std::size(keys)) {
        return false;
    }
    try {
        const AgentUse agentUse;
        std::string text = ReadText(agentUse, keys[index]);
        return take(text, agentUse.Libraries());
    } catch (const AgentException& failure) {
        // The use has ended: no thread is inside the agent while it calls a module's sink.
        VsKit::CUniStream text;
        text << L"Failed to get the agent info, excpetion:[" << failure.Code() << L"]";
        WriteBridgeLog(text);
        return false;
    }
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
    std::string read;
    TakeText(index, [&](std::string& text, const LibrariesInUse* /*libraries*/) {
        read = std::move(text);
        return true;
    });
    return read;
}

bool StoreInformation(unsigned int index, VsKitMsgbus::lpc_buffer& out) {
    return TakeText(index, [&](const std::string& text, const LibrariesInUse* libraries) {
        return !text.empty() && Guarded(false, [&] { return StoreText(out, WideText(text, libraries).View()); });
    });
}

}  // namespace bridge
