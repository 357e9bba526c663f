/// @file
/// Control interface of the simulated agent: its updater. Included by ny_simulator.h, whose conventions hold here too.
#pragma once

#include "ny_agent.h"

extern "C" {

/// A call of the updater's. Opaque.
typedef struct ny_sim_updater_request ny_sim_updater_request_t;

/// The value of a result that was not written.
enum ny_sim_updater_constant : int32_t {
    NY_SIM_UNWRITTEN = -1003,  ///< a result that the product did not write
};

/// Whether the product's updater callbacks are registered with any client: 1 or 0.
int32_t ny_sim_has_updater(const char* productId);

/// The updater calls a product, on a thread of its own. Returns at once with the request, which the caller releases;
/// NY_SIM_NOT_REGISTERED (and no request) when the product has no callbacks; NY_INVALID_ARGUMENT for a text that is not
/// understood. The call is described as a JSON object:
///
///   "call"     "update notify", "set product info", "get product info" or "event"
///   "product"  the product's id
///   "second", "third", "fourth", "key"  texts of the call; one that is absent is passed as null
///   "number"   the number of an update notify; 0 when absent
///   "value"    the value of a set product info, as for ny_sim_variant_from_json; absent, null is passed
///   "without"  an array of what is passed as null although the call has it: "product", "result", "out"
int32_t ny_sim_request_update(const char* json, ny_sim_updater_request_t** out);

/// Waits at most `milliseconds` for the product's answer: NY_OK with the callback's answer in `answer` and what it
/// wrote as its result in `result` (each may be null; NY_SIM_UNWRITTEN when it wrote none), or NY_SIM_TIMEOUT.
int32_t ny_sim_updater_request_wait(ny_sim_updater_request_t* request, uint32_t milliseconds, int32_t* answer,
                                    int32_t* result);
/// The value that a get product info gave, once it was answered, with its length. NY_INVALID_ARGUMENT before, and when
/// the out value was left untouched.
int32_t ny_sim_updater_request_value(ny_sim_updater_request_t* request, const char** text, size_t* length);
/// The operating system's id of the agent thread that called.
uint32_t ny_sim_updater_request_thread(ny_sim_updater_request_t* request);
/// Waits for the answer if there is none yet, then frees the request. Null is accepted.
void ny_sim_updater_request_release(ny_sim_updater_request_t* request);

}  // extern "C"
