/// @file
/// The agent's encryption, into memory that grows as it must.
#pragma once

#include <cstdint>
#include <exception>
#include <limits>
#include <span>
#include <vector>

#include "VsMsgbus/Crypto.h"
#include "VsMsgbus/cpp/Error.hpp"

namespace vsmsgbus {

/// Data of any kind.
using Bytes = std::vector<unsigned char>;

namespace detail {

/// How much room there is for the result of `size` bytes. The agent says how large the result is only after it was
/// written, so that the room must do for every agent: twice the data, for texts made of bytes, and a page for headers.
constexpr size_t RoomFor(size_t size) {
    return 2 * size + 4096;
}

inline Bytes RunCrypto(decltype(VsKitMsgbusEncryptData)& function, const char* doing,
                       std::span<const unsigned char> data, uint64_t type) {
    if (data.size() > std::numeric_limits<unsigned int>::max()) {
        throw Error(doing, 0, "The agent takes less than 4 GiB at a time.");
    }
    Bytes result(RoomFor(data.size()));
    unsigned int size = 0;
    const int32_t code = function(data.data(), static_cast<unsigned int>(data.size()), result.data(), &size, type);
    if (size > result.size()) {
        // The agent has written beyond the room: nothing in the process can be trusted any more.
        std::terminate();
    }
    if (code != 0) {
        throw Error(doing, code, "Enter the bridge first; the agent must be installed and know the type.");
    }
    result.resize(size);
    return result;
}

}  // namespace detail

/// Has the agent encrypt the data. Any thread, while a product is in the bridge.
/// @param data  what is to be encrypted; may be empty
/// @param type  handed to the agent, which defines what it means
/// Throws Error, with code -1, when no product is in the bridge, no agent is there, or the agent failed.
/// @returns the encrypted data, whose size is the agent's affair
inline Bytes Encrypt(std::span<const unsigned char> data, uint64_t type) {
    return detail::RunCrypto(VsKitMsgbusEncryptData, "encrypting", data, type);
}

/// Decrypts what Encrypt gave; all else as there.
inline Bytes Decrypt(std::span<const unsigned char> data, uint64_t type) {
    return detail::RunCrypto(VsKitMsgbusDecryptData, "decrypting", data, type);
}

}  // namespace vsmsgbus
