#include "msgbus/AgentKey.h"

#include <cstring>

LSTATUS AgentKey::Open() noexcept {
    Close();
    const LSTATUS result = ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, R"(Software\Corvane\Agent\)", 0, KEY_READ, &key);
    if (result != ERROR_SUCCESS) {
        key = nullptr;
    }
    return result;
}

LSTATUS AgentKey::Watch(HANDLE event) const noexcept {
    constexpr DWORD namesAndValues = REG_NOTIFY_CHANGE_NAME | REG_NOTIFY_CHANGE_LAST_SET;
    return ::RegNotifyChangeKeyValue(key, TRUE, namesAndValues, event, TRUE);
}

LSTATUS AgentKey::ReadVersion(AgentVersion& version) const noexcept {
    AgentVersion value = {};
    DWORD size = agentVersionSize;
    const LSTATUS result =
        ::RegQueryValueExA(key, "MsgbusVersion", nullptr, nullptr, reinterpret_cast<BYTE*>(value), &size);
    std::memset(version, 0, sizeof version);
    if (result == ERROR_SUCCESS) {
        std::memcpy(version, value, ::strnlen(value, agentVersionSize));
    }
    return result;
}

void AgentKey::Close() noexcept {
    if (key != nullptr) {
        ::RegCloseKey(key);
        key = nullptr;
    }
}
