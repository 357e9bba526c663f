/// @file
/// The agent's crypto service: encryption, decryption and hashing with the agent's keys.
#pragma once

#include <cstdint>

extern "C" {

/// Encrypts `size` bytes at `data` with the agent. Any thread, between VsMsgbusEntry and the last VsMsgbusExit. No bit
/// of the mask of VsMsgbusEntry is needed.
///
/// The result may be longer than the data, and only the agent knows by how much: no call tells it beforehand, and a
/// place that is too small is written beyond its end. Exactly `*outSize` bytes are written. The simulated agent, as an
/// example, makes 17 to 32 bytes more: 32 bytes of no data, 48 of 16 bytes. The maker of your agent can say what it
/// needs.
///
/// @param data     what is to be encrypted; may be null when size is 0.
/// @param size     how many bytes that is.
/// @param out      receives the result, whose size is the agent's affair: it must be large enough, because its capacity
///                 is not asked for. A result of zero bytes leaves it untouched, and it may be null then.
/// @param outSize  receives the result's size.
/// @param type     passed to the agent unchanged; the agent defines what it means.
///
/// @returns 0 on success. -1, with nothing written, when outSize is null, when data is null and size is not 0, when the
/// bridge is not entered or no agent is there, when the agent fails, whatever its code, or when out is null and the
/// result is not empty, which is known only after the agent was called. -1 also when the agent fails only in taking
/// back its own memory: the result and its size are written then. Nothing is logged.
int32_t VsKitMsgbusEncryptData(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                               uint64_t type) noexcept;

/// Decrypts what VsKitMsgbusEncryptData gave; all else as there.
int32_t VsKitMsgbusDecryptData(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                               uint64_t type) noexcept;

/// Has the agent hash the data and tells the size of the hash in `outSize`. The hash itself is not handed out: `out` is
/// neither read nor written, and may always be null. All else as for VsKitMsgbusEncryptData.
int32_t VsKitMsgbusHashBuffer(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                              uint64_t type) noexcept;

/// Says that the agent does not run in FIPS mode: returns 0 whatever it is given, entered or not, and touches nothing.
int32_t VsKitMsgbusIsRunningInFIPSMode(...) noexcept;

/// Reports success without decoding anything: the same function as VsKitMsgbusIsRunningInFIPSMode.
int32_t VsKitMsgbusDecodeData(...) noexcept;

/// Reports success without encoding anything: the same function as VsKitMsgbusIsRunningInFIPSMode.
int32_t VsKitMsgbusEncodeData(...) noexcept;

/// Reports success without decoding or decrypting anything: the same function as VsKitMsgbusIsRunningInFIPSMode.
int32_t VsKitMsgbusDecodeAndDecryptData(...) noexcept;

/// Reports success without encrypting or encoding anything: the same function as VsKitMsgbusIsRunningInFIPSMode.
int32_t VsKitMsgbusEncryptAndEncodeData(...) noexcept;

}  // extern "C"
