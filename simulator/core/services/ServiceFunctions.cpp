// Agent functions for crypto and information.
#include <atomic>
#include <mutex>
#include <string_view>
#include <utility>

#include "ny_simulator.h"
#include "simulator/core/client/Client.h"
#include "simulator/core/frame/Simulate.h"
#include "simulator/core/handles/HandleTable.h"
#include "simulator/core/ny_core.h"
#include "simulator/core/services/Information.h"
#include "simulator/core/services/SystemCrypto.h"
#include "simulator/core/values/Values.h"

using namespace simulator;

namespace {

std::atomic<uint64_t> lastCryptoType = 0;

const SystemCrypto& Crypto() {
    // Never destroyed, as TheFrame. The sanitizer of data races sees how a lock orders first uses.
    static std::mutex creation;
    static const SystemCrypto* crypto = nullptr;
    const std::lock_guard lock(creation);
    if (crypto == nullptr) {
        crypto = new SystemCrypto;
    }
    return *crypto;
}

// Puts the bytes into the caller's buffer. A buffer that is too small is replaced; the real agent may replace any.
void Fill(ny_buffer_t** buffer, std::string bytes) {
    const auto content = Handles().Get(*buffer);
    if (bytes.size() <= content->bytes.size()) {
        content->bytes = std::move(bytes);
        return;
    }
    auto* const larger = Handles().Own<ny_buffer_t>(std::make_shared<Buffer>(Buffer{std::move(bytes)}));
    Handles().Release(std::exchange(*buffer, larger));
}

// The product's data. Notes the type. Throws Failure for wrong arguments.
std::string_view TakeData(ny_client_t* client, uint64_t type, const unsigned char* data, uint32_t size,
                          ny_buffer_t** buffer) {
    static_cast<void>(Handles().Get(client));
    Require(buffer != nullptr && (data != nullptr || size == 0));
    static_cast<void>(Handles().Get(*buffer));
    lastCryptoType = type;
    return {reinterpret_cast<const char*>(data), size};
}

}  // namespace

int32_t ny_core_crypto_encrypt_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data,
                                            uint32_t size, ny_buffer_t** buffer) {
    return Simulate("ny_crypto_encrypt_data_by_type",
                    [&] { Fill(buffer, Crypto().Encrypt(TakeData(client, type, data, size, buffer))); });
}

int32_t ny_core_crypto_decrypt_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data,
                                            uint32_t size, ny_buffer_t** buffer) {
    return Simulate("ny_crypto_decrypt_data_by_type",
                    [&] { Fill(buffer, Crypto().Decrypt(TakeData(client, type, data, size, buffer))); });
}

int32_t ny_core_crypto_hash_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data, uint32_t size,
                                         ny_buffer_t** buffer) {
    return Simulate("ny_crypto_hash_data_by_type",
                    [&] { Fill(buffer, SystemCrypto::Hash(TakeData(client, type, data, size, buffer))); });
}

int32_t ny_core_info_get(ny_client_t* client, const char* key, ny_variant_t** out) {
    return Simulate("ny_info_get", [&] {
        static_cast<void>(Handles().Get(client));
        Require(key != nullptr && out != nullptr);
        ValuePointer value = TheInformation().Find(key);
        if (value == nullptr) {
            throw Failure{NY_SIM_UNKNOWN_KEY};
        }
        *out = Handles().Own<ny_variant_t>(std::move(value));
    });
}

uint64_t ny_sim_last_crypto_type(void) {
    return lastCryptoType;
}
