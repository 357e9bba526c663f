/// @file
/// What the agent knows of itself: its mode and identity, where it logs, its servers, its version and last contacts.
#pragma once

#include <cstdint>

#include "VsMsgbus/LpcBuffer.h"

/// The values of VsKitMsgbusGetInformation's index. Each has the name of the agent's key.
enum VsMsgbusInformation : unsigned int {
    /// "AgentMode"
    VsMsgbusInformationAgentMode = 0,
    /// "GUID"
    VsMsgbusInformationGUID = 1,
    /// "LogLocation"
    VsMsgbusInformationLogLocation = 2,
    /// "RdxServerLastUsed"
    VsMsgbusInformationRdxServerLastUsed = 3,
    /// "RdxPortLastUsed"
    VsMsgbusInformationRdxPortLastUsed = 4,
    /// "RdxServerList"
    VsMsgbusInformationRdxServerList = 5,
    /// "RdxPortList"
    VsMsgbusInformationRdxPortList = 6,
    /// "Version"
    VsMsgbusInformationVersion = 7,
    /// "LastASCTime"
    VsMsgbusInformationLastASCTime = 8,
    /// "LastPolicyUpdateTime"
    VsMsgbusInformationLastPolicyUpdateTime = 9,
    /// "CryptoMode"
    VsMsgbusInformationCryptoMode = 10,
};

extern "C" {

/// Reads one value as wide text. Any thread, at any time. No bit of the mask of VsMsgbusEntry is needed. `out` is
/// emptied first in every case (the text that it held is freed) and must have been empty or filled by the bridge
/// before.
///
/// A failure of the agent's is logged as "Failed to get the agent info, excpetion:[CODE]", like all lines about
/// information at level 3 of the process's log sink, as every line of the bridge: they tell of failures, so no severity
/// hides them.
///
/// @returns 1 when `out` holds the value. 0, with `out` empty, when out is null, the index is above 10, the bridge is
/// not entered, the value is empty, memory ran out, or the agent failed or is not there.
int32_t VsKitMsgbusGetInformation(unsigned int index, VsKitMsgbus::lpc_buffer* out) noexcept;

/// Reads the value of any key that the agent knows as narrow text (UTF-8). Any thread, at any time, without a bit of
/// the mask. `out` is emptied first, except when key is null.
///
/// A value that was found and cannot be read as text comes empty and is logged as "Failed to get ny info,
/// excpetion:[CODE]"; one that cannot be given back to the agent is logged as "Unable to release ny variant for KEY
/// excpetion: CODE".
///
/// @returns 0 when `out` holds the value. -1 when key or out is null, the bridge is not entered, or memory ran out. The
/// agent's code when it does not know the key, 705 when it is not there; neither is logged.
int32_t VsKitMsgbusGetInfoByKeyName(const char* key, VsKitMsgbus::lpc_buffer* out) noexcept;

/// Asks for the agent's mode. Any thread, at any time. Sets `*mode` to 0, 1 or 2 when the mode is exactly "0", "1" or
/// "2"; any other mode leaves it as it was. Failures of the agent's are logged as for VsKitMsgbusGetInformation.
///
/// @returns 1 when the agent has a mode that is not empty, one of the three or not. 0 when mode is null, the bridge is
/// not entered, or there is no mode to be had.
int32_t VsKitMsgbusManagedMode(unsigned int* mode) noexcept;

}  // extern "C"
