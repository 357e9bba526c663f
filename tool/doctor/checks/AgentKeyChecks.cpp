#include "tool/doctor/checks/AgentKeyChecks.h"

#include <fmt/format.h>

#include "msgbus/client/AgentKey.h"
#include "tool/doctor/Groups.h"
#include "tool/doctor/SystemTexts.h"
#include "tool/doctor/Writers.h"
#include "tool/doctor/checks/RawValue.h"

namespace tool::doctor {

namespace {

constexpr char agentKey[] = R"(Software\Corvane\Agent)";
constexpr char versionValue[] = "MsgbusVersion";
constexpr char keyCheck[] = "the agent's key, 64-bit view";
constexpr char keyWritersCheck[] = "who may write it";
constexpr char versionCheck[] = "the agent's version";

// A detail about the value in the 32-bit view, where the bridge does not look; empty when it is not there.
std::vector<std::string> SeenInOtherView() {
    const RawValue other = ReadRawValue(agentKey, versionValue, KEY_WOW64_32KEY);
    if (!other.IsThere()) {
        return {};
    }
    return {fmt::format("the 32-bit view has it, with {} \"{}\"; the bridge reads the 64-bit view", versionValue,
                        other.text)};
}

std::string Seen(const RawValue& version) {
    return fmt::format("MsgbusVersion: \"{}\", {}, {} bytes with the terminator", version.text, version.TypeName(),
                       version.size);
}

// The bridge's own reader decides whether the check is good. The raw value gives the reason.
Check CheckVersion(const bridge::AgentKey& key) {
    const RawValue raw = ReadRawValue(agentKey, versionValue, KEY_WOW64_64KEY);
    bridge::AgentVersion version{};
    const LSTATUS error = key.ReadVersion(version);
    if (error == ERROR_SUCCESS && version[0] != '\0') {
        return Good(registryGroup, versionCheck,
                    {Seen(raw), fmt::format("the bridge reads \"{}\" and starts the agent", Utf8OfAnsi(version))});
    }
    if (error == ERROR_SUCCESS) {
        return Bad(registryGroup, versionCheck, Problem::VersionEmpty, {}, {Seen(raw)});
    }
    if (raw.IsThere()) {
        return Bad(registryGroup, versionCheck, Problem::VersionTooLong,
                   {std::to_string(raw.size), std::to_string(bridge::agentVersionSize)}, {Seen(raw)});
    }
    return Bad(registryGroup, versionCheck, Problem::VersionAbsent, {std::to_string(error)}, SeenInOtherView());
}

Check CheckKeyWriters() {
    HKEY opened = nullptr;
    ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, agentKey, 0, READ_CONTROL | KEY_WOW64_64KEY, &opened);
    const bridge::UniqueKey key(opened);
    const Writers writers = WritersOf(key.get());
    return {registryGroup, keyWritersCheck, writers.areAdministrators ? State::Good : State::Note, {writers.Text()}};
}

}  // namespace

Checks CheckAgentKey() {
    bridge::AgentKey key;
    const LSTATUS error = key.Open();
    if (error == ERROR_SUCCESS) {
        return {Good(registryGroup, keyCheck, {std::string(R"(HKEY_LOCAL_MACHINE\)") + agentKey}), CheckKeyWriters(),
                CheckVersion(key)};
    }
    const Problem problem = error == ERROR_FILE_NOT_FOUND ? Problem::AgentAbsent : Problem::AgentUnreadable;
    return {Bad(registryGroup, keyCheck, problem, {std::to_string(error)}, SeenInOtherView()),
            NotReached(registryGroup, keyWritersCheck), NotReached(registryGroup, versionCheck)};
}

}  // namespace tool::doctor
