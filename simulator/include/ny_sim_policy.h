/// @file
/// Control interface of the simulated agent: policies. Included by ny_simulator.h, whose conventions hold here too.
#pragma once

#include "ny_agent.h"

extern "C" {

// --- What the agent holds -----------------------------------------------------------------------------------------

/// Replaces all policies of the agent. Bags that were fetched before keep what they have. NY_INVALID_ARGUMENT, with
/// nothing replaced, when the text is no JSON or not of this form:
///
///   [
///     {
///       "softwareId": "PRODUCT1000",        the product that the policy is for; must be there
///       "user": "DOMAIN\\name",             left out: the policy is the machine's
///       "feature": "FEATURE1000",
///       "category": "General",
///       "type": "Protection",
///       "name": "My Default",
///       "settingsObject": {"name": "My Default", "intParameter": "1", "stringParameter": "a", "digest": "0123abcd"},
///       "sections": [
///         {"name": "Scan", "settings": {"Enabled": "1", "Depth": 3}},
///         {"name": "Paths", "settings": [["Exclude", "C:\\one"], ["Exclude", "C:\\two"]]}
///       ]
///     }
///   ]
///
/// Everything but softwareId may be left out or null: the agent then answers null for that text, which is none of the
/// policy's. Settings are an object, or a list of pairs where a name comes twice, is null, or where there are very
/// many. A value is what ny_sim_variant_from_json makes of it; null is no value. A name that is not listed here is
/// refused.
int32_t ny_sim_policies_from_json(const char* json);

// --- Notifications ------------------------------------------------------------------------------------------------

/// Whether the product's policy callback is registered with any client: 1 or 0.
int32_t ny_sim_has_policy_callback(const char* productId);
/// The notification mask that it was registered with; 0 when it is not registered.
uint32_t ny_sim_policy_mask(const char* productId);

/// A notification. Opaque.
typedef struct ny_sim_policy_request ny_sim_policy_request_t;

/// The agent notifies a product of its policies, on a thread of its own. Returns at once with the request, which the
/// caller releases; NY_SIM_NOT_REGISTERED (and no request) when the product has no policy callback.
int32_t ny_sim_notify_policy(const char* productId, ny_sim_policy_request_t** out);
/// The same, but the callback of `productId` is told `toldId` as the product, which may be null.
int32_t ny_sim_notify_policy_as(const char* productId, const char* toldId, ny_sim_policy_request_t** out);
/// Waits at most `milliseconds` until the callback has returned: NY_OK with its result in `answer` (may be null), or
/// NY_SIM_TIMEOUT.
int32_t ny_sim_policy_request_wait(ny_sim_policy_request_t* request, uint32_t milliseconds, int32_t* answer);
/// The operating system's id of the agent thread that notifies.
uint32_t ny_sim_policy_request_thread(ny_sim_policy_request_t* request);
/// Waits for the answer if there is none yet, then frees the request. Null is accepted.
void ny_sim_policy_request_release(ny_sim_policy_request_t* request);

/// ny_policy_enforce notifies a product in the same way; it answers NY_SIM_NOT_REGISTERED for one that has no policy
/// callback with the client that is named.

}  // extern "C"
