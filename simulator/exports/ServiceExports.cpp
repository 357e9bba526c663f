// ny_client.dll: crypto and information.
#include "ny_agent.h"
#include "simulator/core/ny_core.h"

int32_t ny_crypto_encrypt_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data, uint32_t size,
                                       ny_buffer_t** buffer) {
    return ny_core_crypto_encrypt_data_by_type(client, type, data, size, buffer);
}

int32_t ny_crypto_decrypt_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data, uint32_t size,
                                       ny_buffer_t** buffer) {
    return ny_core_crypto_decrypt_data_by_type(client, type, data, size, buffer);
}

int32_t ny_crypto_hash_data_by_type(ny_client_t* client, uint64_t type, const unsigned char* data, uint32_t size,
                                    ny_buffer_t** buffer) {
    return ny_core_crypto_hash_data_by_type(client, type, data, size, buffer);
}

int32_t ny_info_get(ny_client_t* client, const char* key, ny_variant_t** out) {
    return ny_core_info_get(client, key, out);
}
