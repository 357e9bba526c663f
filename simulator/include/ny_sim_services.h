/// @file
/// Control interface of the simulated agent: its information and crypto. Included by ny_simulator.h, whose conventions
/// hold here too.
///
/// Data is encrypted by AES-256 in CBC mode with a random initialisation vector in front and a key that the agent makes
/// anew in each process; hashes are SHA-256. Every `type` does the same.
#pragma once

#include "ny_agent.h"

extern "C" {

/// The codes of the crypto and the information alone.
enum ny_sim_services_code : int32_t {
    NY_SIM_UNKNOWN_KEY = 1004,    ///< ny_info_get: there is no value of that key
    NY_SIM_NOT_ENCRYPTED = 1005,  ///< ny_crypto_decrypt_data_by_type: not what this agent encrypted
};

/// Sets the value of an information key, as for ny_sim_variant_from_json; a null value removes it. The agent begins
/// with none, and ny_sim_reset forgets them all.
int32_t ny_sim_set_information(const char* key, const char* json);
/// The members of a JSON object take the place of all values.
int32_t ny_sim_set_all_information(const char* json);

/// The `type` of the last crypto call that was not refused for its arguments; 0 before the first.
uint64_t ny_sim_last_crypto_type(void);

}  // extern "C"
