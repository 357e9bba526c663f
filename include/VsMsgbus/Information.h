/// @file
/// What the agent knows of itself: its mode and identity, where it logs, its servers, its version and last contacts.
///
/// All functions may be called from any thread, and answer at any time. Failures that a comment says are logged go to
/// the process's log sink, at level 3 as every line of the bridge: they are failures, so no severity hides them.
#pragma once

#include <cstdint>

#include "VsMsgbus/LpcBuffer.h"

/// The values of VsKitMsgbusGetInformation's index. Each has the name of the agent's key.
enum VsMsgbusInformation : unsigned int {
    VsMsgbusInformationAgentMode = 0,
    VsMsgbusInformationGUID = 1,
    VsMsgbusInformationLogLocation = 2,
    VsMsgbusInformationRdxServerLastUsed = 3,
    VsMsgbusInformationRdxPortLastUsed = 4,
    VsMsgbusInformationRdxServerList = 5,
    VsMsgbusInformationRdxPortList = 6,
    VsMsgbusInformationVersion = 7,
    VsMsgbusInformationLastASCTime = 8,
    VsMsgbusInformationLastPolicyUpdateTime = 9,
    VsMsgbusInformationCryptoMode = 10,
};

extern "C" {

/// Reads one value as wide text. `out` is emptied first in every case (the text that it held is freed) and must have
/// been empty or filled by the bridge before.
///
/// @returns 1 when `out` holds the value. 0, with `out` empty, when out is null, the index is above 10, the bridge is
/// not entered, the value is empty, memory ran out, or the agent failed or is not there; the last two of these are
/// logged as "Failed to get the agent info, excpetion:[<code>]".
int32_t VsKitMsgbusGetInformation(unsigned int index, VsKitMsgbus::lpc_buffer* out) noexcept;

/// Reads the value of any key that the agent knows as narrow text (UTF-8). `out` is emptied first, except when key is
/// null.
///
/// @returns 0 when `out` holds the value. -1 when key or out is null, the bridge is not entered, or memory ran out. The
/// agent's code when it does not know the key, 705 when it is not there; neither is logged. A value that was found and
/// cannot be read as text comes empty and is logged as "Failed to get ny info, excpetion:[<code>]"; one that cannot be
/// given back to the agent is logged as "Unable to release ny variant for <key> excpetion: <code>".
int32_t VsKitMsgbusGetInfoByKeyName(const char* key, VsKitMsgbus::lpc_buffer* out) noexcept;

/// Asks for the agent's mode. Returns 1 when the agent has one, and then sets `*mode` to 0, 1 or 2 if it is exactly
/// "0", "1" or "2"; any other mode leaves `*mode` as it was. Returns 0 when mode is null, the bridge is not entered, or
/// there is no mode to be had; failures of the agent are logged as for VsKitMsgbusGetInformation.
int32_t VsKitMsgbusManagedMode(unsigned int* mode) noexcept;

}  // extern "C"
