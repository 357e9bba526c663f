/// @file
/// The agent's crypto service: encryption, decryption and hashing with the agent's keys.
#pragma once

#include <cstdint>

extern "C" {

/// Encrypts `size` bytes at `data` with the agent.
///
/// @param data     what is to be encrypted; may be null when size is 0.
/// @param size     in bytes.
/// @param out      receives the result, whose size is the agent's affair: it must be large enough, because its capacity
///                 is not asked for. A result of zero bytes leaves it untouched.
/// @param outSize  receives the result's size.
/// @param type     passed to the agent unchanged; the agent defines what it means.
///
/// Any thread, between VsMsgbusEntry and the last VsMsgbusExit. Returns 0 on success. -1, with nothing written, when
/// out or outSize is null, when data is null and size is not 0, when the bridge is not entered or no agent is there, or
/// when the agent fails, whatever its code. Nothing is logged.
int32_t VsKitMsgbusEncryptData(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                               uint64_t type) noexcept;

/// Decrypts what VsKitMsgbusEncryptData gave; all else as there.
int32_t VsKitMsgbusDecryptData(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                               uint64_t type) noexcept;

/// Has the agent hash the data and tells the size of the hash in `outSize`. The hash itself is not handed out: `out` is
/// neither read nor written, and may be null. All else as for VsKitMsgbusEncryptData.
int32_t VsKitMsgbusHashBuffer(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                              uint64_t type) noexcept;

/// These five take anything, touch nothing and return 0, entered or not: requests to encode and decode report success
/// without doing anything, and the agent is never said to run in FIPS mode. They are one function under five names.
int32_t VsKitMsgbusDecodeData(...) noexcept;
/// See VsKitMsgbusDecodeData.
int32_t VsKitMsgbusEncodeData(...) noexcept;
/// See VsKitMsgbusDecodeData.
int32_t VsKitMsgbusDecodeAndDecryptData(...) noexcept;
/// See VsKitMsgbusDecodeData.
int32_t VsKitMsgbusEncryptAndEncodeData(...) noexcept;
/// See VsKitMsgbusDecodeData.
int32_t VsKitMsgbusIsRunningInFIPSMode(...) noexcept;

}  // extern "C"
