// The crypto exports.
#include "VsMsgbus/Crypto.h"

#include <cstring>

#include "base/Boundary.h"
#include "dispatcher/groups/BufferGroup.h"
#include "dispatcher/groups/CryptoGroup.h"
#include "msgbus/client/AgentUse.h"
#include "services/ServiceFailure.h"
#include "values/AgentException.h"
#include "values/AgentHandle.h"

using namespace bridge;

namespace {

// Runs one of the agent's crypto functions and hands what it made to `take(bytes, size)`, which is not called when
// anything before it fails, and says whether it took that. The agent's answer when it is given its buffer back counts
// as well.
template <class CryptoFunction, class Take>
int32_t RunCrypto(const CryptoFunction& cryptoFunction, const unsigned char* data, uint32_t size, uint64_t type,
                  Take&& take) noexcept {
    if (data == nullptr && size != 0) {
        return serviceFailure;
    }
    return Guarded(serviceFailure, [&] {
        const AgentUse agentUse;
        if (!agentUse) {
            return serviceFailure;
        }
        BufferOwner buffer;
        void* const* const buffers = TableOf(bufferGroup, agentUse.Libraries());
        Check(agent::ny_buffer_create.In(buffers)(buffer.Out(agentUse.Libraries()), size));
        Check(cryptoFunction.In(agentUse.Libraries())(agentUse.Client(), type, data, size, buffer.InOut()));
        const unsigned char* bytes = nullptr;
        size_t length = 0;
        Check(agent::ny_buffer_get_raw.In(buffers)(buffer.Get(), &bytes, &length));
        const bool isTaken = (bytes != nullptr || length == 0) && take(bytes, static_cast<uint32_t>(length));
        return isTaken && buffer.Reset() == NY_OK ? 0 : serviceFailure;
    });
}

template <class CryptoFunction>
int32_t RunCryptoTo(const CryptoFunction& cryptoFunction, const unsigned char* data, uint32_t size, uint64_t type,
                    unsigned char* out, uint32_t* outSize) noexcept {
    if (outSize == nullptr) {
        return serviceFailure;
    }
    return RunCrypto(cryptoFunction, data, size, type, [&](const unsigned char* bytes, uint32_t length) {
        // Only now is it known whether a place is needed.
        if (out == nullptr && length != 0) {
            return false;
        }
        *outSize = length;
        if (length != 0) {
            std::memcpy(out, bytes, length);
        }
        return true;
    });
}

}  // namespace

int32_t VsKitMsgbusEncryptData(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                               uint64_t type) noexcept {
    return RunCryptoTo(agent::ny_crypto_encrypt_data_by_type, data, size, type, out, outSize);
}

int32_t VsKitMsgbusDecryptData(const unsigned char* data, unsigned int size, unsigned char* out, unsigned int* outSize,
                               uint64_t type) noexcept {
    return RunCryptoTo(agent::ny_crypto_decrypt_data_by_type, data, size, type, out, outSize);
}

// The hash itself is not handed out, kept on purpose.
int32_t VsKitMsgbusHashBuffer(const unsigned char* data, unsigned int size, unsigned char* /*out*/,
                              unsigned int* outSize, uint64_t type) noexcept {
    if (outSize == nullptr) {
        return serviceFailure;
    }
    return RunCrypto(agent::ny_crypto_hash_data_by_type, data, size, type,
                     [&](const unsigned char* /*bytes*/, uint32_t length) {
                         *outSize = length;
                         return true;
                     });
}

// The exports file gives this function its four other names.
int32_t VsKitMsgbusIsRunningInFIPSMode(...) noexcept {
    return 0;
}
