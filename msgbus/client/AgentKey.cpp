#include "msgbus/client/AgentKey.h"

#include <cstring>

namespace bridge {

LSTATUS AgentKey::Open() noexcept {
    HKEY opened = nullptr;
    const LSTATUS result = ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, R"(Software\Corvane\Agent\)", 0, KEY_READ, &opened);
    key.reset(result == ERROR_SUCCESS ? opened : nullptr);
    return result;
}

LSTATUS AgentKey::Watch(HANDLE event) const noexcept {
    constexpr DWORD namesAndValues = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET;
    return ::RegNotifyChangeKeyValue(key.get(), TRUE, namesAndValues, event, TRUE);
}

LSTATUS AgentKey::ReadVersion(AgentVersion& version) const noexcept {
    AgentVersion value = {};
    DWORD size = agentVersionSize;
    const LSTATUS result =
        ::RegQueryValueExA(key.get(), "MsgbusVersion", nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size);
    std::memset(version, 0, sizeof version);
    if (result == ERROR_SUCCESS) {
        std::memcpy(version, value, ::strnlen(value, agentVersionSize));
    }
    return result;
}

}  // namespace bridge
