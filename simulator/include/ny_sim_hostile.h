/// @file
/// Control interface of the simulated agent: what no agent should do, and some do. Included by ny_simulator.h, whose
/// conventions hold here too. All of it is off at first and after ny_sim_reset.
///
/// Callbacks are made with what such a call needs: a property bag, a policy uri of the product, a task "hostile" of
/// the registered type without settings, the texts "second", "third", "fourth" and "key" with the value "value", an
/// event, the log line (3, "hostile", "a line"). What is lent is valid during the call and ends with it; a task's
/// accessors are there even when ny_client.dll is not.
#pragma once

#include "ny_agent.h"

extern "C" {

/// The purposes for which the agent calls a product.
enum ny_sim_callback : int32_t {
    NY_SIM_CALL_PROPERTIES = 0,
    NY_SIM_CALL_POLICY,
    NY_SIM_CALL_TASK_EXECUTE,
    NY_SIM_CALL_TASK_STOP,
    NY_SIM_CALL_TASK_REMOVE,
    NY_SIM_CALL_TASK_UPDATE_STATUS,
    NY_SIM_CALL_UPDATE_NOTIFY,
    NY_SIM_CALL_SET_PRODUCT_INFO,
    NY_SIM_CALL_GET_PRODUCT_INFO,
    NY_SIM_CALL_UPDATE_EVENT,
    NY_SIM_CALL_LOG,
};

// --- One lock -----------------------------------------------------------------------------------------------------

/// Whether the agent holds one recursive lock of its own around each register, each unregister and each callback, those
/// of the log included. It covers what begins after the switch.
void ny_sim_set_one_lock(int32_t on);

// --- Callbacks inside register ------------------------------------------------------------------------------------

/// When ny_sim_call_in_register has its callback made.
enum ny_sim_register_call : int32_t {
    NY_SIM_NO_CALL = 0,
    NY_SIM_ON_SAME_THREAD,   ///< on the thread that registers
    NY_SIM_ON_OTHER_THREAD,  ///< on a thread of the agent's, which the one that registers waits for; it shares the lock
};

/// While a product is registered for the service of that callback, before register returns, the agent makes the
/// callback; for the log, inside ny_client_handler_set_logger_callback.
int32_t ny_sim_call_in_register(ny_sim_callback callback, ny_sim_register_call mode);
/// The number of such callbacks since the last reset, and their answers in the order in which they came.
size_t ny_sim_register_call_count(void);
int32_t ny_sim_register_call_answer(size_t index, int32_t* answer);  ///< NY_INVALID_ARGUMENT beyond the last one

// --- Late calls ---------------------------------------------------------------------------------------------------

/// From now on the agent remembers each registration that is made: function, callback data and client pointer, beyond
/// unregister and beyond the client's release. Off forgets them.
void ny_sim_set_remember(int32_t on);
/// The remembered registrations of the product for the service of that callback, the oldest first. For the log the
/// product is the client's.
size_t ny_sim_remembered_count(ny_sim_callback callback, const char* productId);
/// How many of those registrations were ended by unregister. The others were ended by the client's end, or are not
/// ended.
size_t ny_sim_unregistered_count(ny_sim_callback callback, const char* productId);

/// A late call. Opaque.
typedef struct ny_sim_late_call ny_sim_late_call_t;

/// The agent makes the callback with a remembered registration, on a thread of its own, whether or not it is registered
/// any more; neither unregister nor release waits for it. Returns at once with the call, which the caller releases;
/// NY_SIM_NOT_REGISTERED (and no call) when there are not so many.
int32_t ny_sim_call_late(ny_sim_callback callback, const char* productId, size_t index, ny_sim_late_call_t** out);
/// Waits at most `milliseconds` until the callback has returned: NY_OK with its result in `answer` (may be null), or
/// NY_SIM_TIMEOUT.
int32_t ny_sim_late_call_wait(ny_sim_late_call_t* call, uint32_t milliseconds, int32_t* answer);
/// The operating system's id of the agent thread that calls.
uint32_t ny_sim_late_call_thread(ny_sim_late_call_t* call);
/// Waits for the answer if there is none yet, then frees the call. Null is accepted.
void ny_sim_late_call_release(ny_sim_late_call_t* call);

// --- Impatience ---------------------------------------------------------------------------------------------------

/// Whether unregister and the release of a client return while callbacks still run on other threads.
void ny_sim_set_impatient(int32_t on);

}  // extern "C"
