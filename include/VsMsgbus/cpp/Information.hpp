/// @file
/// What the agent knows of itself.
#pragma once

#include <optional>
#include <string>

#include "VsMsgbus/Information.h"

namespace vsmsgbus {

/// Read anew at each call. Any thread, at any time. Nothing when no product is in the bridge, no agent is there, or the
/// agent does not know it; an empty value is nothing, too.
namespace Information {

/// The value of that index.
inline std::optional<std::wstring> Read(VsMsgbusInformation index) {
    VsKitMsgbus::lpc_buffer text;
    if (VsKitMsgbusGetInformation(index, &text) != 1) {
        return std::nullopt;
    }
    return VsKitMsgbus::TakeWideText(text);
}

/// "AgentMode", as the agent writes it
inline std::optional<std::wstring> AgentMode() {
    return Read(VsMsgbusInformationAgentMode);
}
/// "GUID": the agent's identity
inline std::optional<std::wstring> Guid() {
    return Read(VsMsgbusInformationGUID);
}
/// "LogLocation": where the agent logs
inline std::optional<std::wstring> LogLocation() {
    return Read(VsMsgbusInformationLogLocation);
}
/// "RdxServerLastUsed"
inline std::optional<std::wstring> LastServer() {
    return Read(VsMsgbusInformationRdxServerLastUsed);
}
/// "RdxPortLastUsed"
inline std::optional<std::wstring> LastPort() {
    return Read(VsMsgbusInformationRdxPortLastUsed);
}
/// "RdxServerList"
inline std::optional<std::wstring> Servers() {
    return Read(VsMsgbusInformationRdxServerList);
}
/// "RdxPortList"
inline std::optional<std::wstring> Ports() {
    return Read(VsMsgbusInformationRdxPortList);
}
/// "Version": the agent's
inline std::optional<std::wstring> Version() {
    return Read(VsMsgbusInformationVersion);
}
/// "LastASCTime"
inline std::optional<std::wstring> LastContact() {
    return Read(VsMsgbusInformationLastASCTime);
}
/// "LastPolicyUpdateTime"
inline std::optional<std::wstring> LastPolicyUpdate() {
    return Read(VsMsgbusInformationLastPolicyUpdateTime);
}
/// "CryptoMode"
inline std::optional<std::wstring> CryptoMode() {
    return Read(VsMsgbusInformationCryptoMode);
}

/// The agent's mode as a number. Nothing as well for a mode other than 0, 1 and 2.
inline std::optional<unsigned> ManagedMode() {
    constexpr unsigned unknown = ~0U;
    unsigned mode = unknown;
    if (VsKitMsgbusManagedMode(&mode) != 1 || mode == unknown) {
        return std::nullopt;
    }
    return mode;
}

/// The value of any key that the agent knows, UTF-8.
inline std::optional<std::string> ByKey(const std::string& key) {
    VsKitMsgbus::lpc_buffer text;
    if (VsKitMsgbusGetInfoByKeyName(key.c_str(), &text) != 0) {
        return std::nullopt;
    }
    return VsKitMsgbus::TakeNarrowText(text);
}

}  // namespace Information

}  // namespace vsmsgbus
