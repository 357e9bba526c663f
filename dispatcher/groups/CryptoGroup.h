// Group "crypto" of ny_client.dll.
#pragma once

#include "dispatcher/EntryPoint.h"

namespace bridge {

// In slot order.
inline constexpr NameTable<4> cryptoNames = {
    "ny_crypto_encrypt_data_by_type",
    "ny_crypto_decrypt_data_by_type",
    "ny_crypto_hash_data_by_type",
    "ny_crypto_name",
};

namespace {

constinit Group cryptoGroup{"crypto", "ny_client.dll", cryptoNames.data(), cryptoNames.size()};

template <auto function>
using CryptoEntryPoint = EntryPoint<function, cryptoNames, cryptoGroup>;

}  // namespace

namespace agent {

constexpr CryptoEntryPoint<&::ny_crypto_encrypt_data_by_type> ny_crypto_encrypt_data_by_type{};
constexpr CryptoEntryPoint<&::ny_crypto_decrypt_data_by_type> ny_crypto_decrypt_data_by_type{};
constexpr CryptoEntryPoint<&::ny_crypto_hash_data_by_type> ny_crypto_hash_data_by_type{};

}  // namespace agent

}  // namespace bridge
