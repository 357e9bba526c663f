/// @file
/// Control interface of the simulated agent: what a test, a demo or a module's author does to the agent from outside.
///
/// The simulated agent is four libraries with the agent's own names (ny_client.dll, ny_variant.dll, ny_msgbus.dll,
/// ny_logger.dll) and one library that they share, ny_simulator.dll, which holds the agent's state and exports the
/// functions below. A process that links ny_simulator.dll keeps that state while the four come and go.
///
/// Conventions
///  1. Plain C. Every function may be called from any thread and never lets an exception out.
///  2. Functions that return int32_t answer NY_OK (0) or a code: an agent's code, or one of ny_sim_code.
///  3. Texts are zero-terminated UTF-8. A text handed out stays valid until the object it came from is released; texts
///     of the call record and of misuse stay valid until the process ends.
///  4. Callbacks of registered products run on threads of the simulated agent, never on the caller's.
#pragma once

#include "ny_agent.h"

extern "C" {

/// The codes of these functions alone, beside the agent's own.
enum ny_sim_code : int32_t {
    NY_SIM_NOT_REGISTERED = 1001,  ///< the product has no registration of that service
    NY_SIM_TIMEOUT = 1002,         ///< the time given has passed
    NY_SIM_NOT_SIMULATED = 1003,   ///< the agent exports this name, but the function is not simulated
};

/// Forgets faults, hooks, the call record, the misuse count, the policies, the scheduler's tasks and reports, and all
/// information values, and ends all hostility. Handles that are alive stay alive.
void ny_sim_reset(void);

// --- Fault injection ----------------------------------------------------------------------------------------------

/// How often a fault is answered.
enum ny_sim_fault_mode : int32_t { NY_SIM_ONCE = 0, NY_SIM_FROM_THEN_ON = 1 };

/// Makes the agent function of that name answer `code` without doing anything, at its nth call counted from now (1 is
/// the next one), once or from then on. A second fault for the same function replaces the first.
int32_t ny_sim_fail_call(const char* function, uint32_t nth, int32_t code, ny_sim_fault_mode mode);
/// Ends all faults; what was counted stays.
void ny_sim_clear_faults(void);
/// How many calls of that function were answered such a code since the process began; 0 for null and unknown names. No
/// clear and no reset changes it.
size_t ny_sim_fault_count(const char* function);

/// Runs at the start of every call of `function`, on the calling thread, before any fault is looked at and while no
/// lock of the simulated agent is held. It may block. A null hook removes it; removing waits for none that runs.
typedef void (*ny_sim_hook_t)(const char* function, void* userData);
/// Sets the hook of a function, or with null removes it.
int32_t ny_sim_set_hook(const char* function, ny_sim_hook_t hook, void* userData);

// --- Call record --------------------------------------------------------------------------------------------------

/// One call of the record.
typedef struct ny_sim_call {
    const char* function;  ///< of the agent's
    uint32_t threadId;     ///< the operating system's id of the calling thread
    int32_t result;        ///< the answer, the injected one included
} ny_sim_call_t;           ///< its short name

/// Agent calls since the last reset or clear, in the order in which they began; those still running are counted, with
/// result 0. A null function counts all.
size_t ny_sim_call_count(const char* function);
int32_t ny_sim_get_call(size_t index, ny_sim_call_t* out);  ///< NY_INVALID_ARGUMENT beyond the last one
/// Forgets the record of calls.
void ny_sim_clear_calls(void);
/// Waits at most `milliseconds` until `count` calls of `function` have returned since the last reset or clear; a null
/// function counts all. NY_OK, or NY_SIM_TIMEOUT.
int32_t ny_sim_wait_calls(const char* function, size_t count, uint32_t milliseconds);

/// Waits at most `milliseconds` until no thread of the agent's is at work, whether or not its callbacks have answered.
/// NY_OK, or NY_SIM_TIMEOUT.
int32_t ny_sim_wait_idle(uint32_t milliseconds);

// --- Handles ------------------------------------------------------------------------------------------------------

/// The kinds of handles.
enum ny_sim_handle_kind : int32_t {
    NY_SIM_ANY = 0,
    NY_SIM_BUFFER,
    NY_SIM_WBUFFER,
    NY_SIM_VARIANT,
    NY_SIM_TABLE,
    NY_SIM_ARRAY,
    NY_SIM_CLIENT,
    NY_SIM_PROPERTY_BAG,
    NY_SIM_LOGGER,
    NY_SIM_POLICY_URI,
    NY_SIM_POLICY_BAG,
    NY_SIM_POLICY_ITERATOR,
};

/// Handles alive, that is, created or handed out as owned and not yet released as often.
size_t ny_sim_live_handles(ny_sim_handle_kind kind);
/// Calls that named a handle that was not alive or of another kind, and calls by a thread that held locks of the
/// caller's. Null handles are answered with NY_INVALID_ARGUMENT and do not count.
size_t ny_sim_misuse_count(void);
/// A text about the last misuse, for a person to read; empty when there was none.
const char* ny_sim_last_misuse(void);

/// How many locks of its own the calling thread holds; a function of the program that calls the agent.
typedef size_t (*ny_sim_held_locks_t)();
/// Asked at the start of every call of an agent function, on the calling thread: a caller that holds a lock while the
/// agent runs can deadlock the process. Null, as at first, switches the check off. ny_sim_reset does not change it.
void ny_sim_set_held_locks(ny_sim_held_locks_t heldLocks);

// --- Clients ------------------------------------------------------------------------------------------------------

/// Clients that were started and not yet released.
size_t ny_sim_started_clients(void);
/// The products that are registered with any client for anything, in the order of their ids; the ny_sim_has_* functions
/// say for what. The id is valid until the process ends. NY_INVALID_ARGUMENT beyond the last one.
int32_t ny_sim_get_product(size_t index, const char** productId);
/// Whether the product's property provider is registered with any client: 1 or 0.
int32_t ny_sim_has_property_provider(const char* productId);
/// The agent writes a log line: every client's logger callback is called on an agent thread. Returns when all have
/// returned. NY_SIM_NOT_REGISTERED when no client has a callback.
int32_t ny_sim_emit_log(uint32_t severity, const char* module, const char* message);

// --- Properties ---------------------------------------------------------------------------------------------------

/// A request for properties. Opaque.
typedef struct ny_sim_property_request ny_sim_property_request_t;

/// The agent asks a product for its properties, on a thread of its own. Returns at once with the request, which the
/// caller releases; NY_SIM_NOT_REGISTERED (and no request) when the product has no provider.
int32_t ny_sim_request_properties(const char* productId, ny_sim_property_request_t** out);
/// Waits at most `milliseconds` for the product's answer: NY_OK with the callback's result in `answer` (may be null),
/// or NY_SIM_TIMEOUT.
int32_t ny_sim_property_request_wait(ny_sim_property_request_t* request, uint32_t milliseconds, int32_t* answer);
/// The properties added to the bag, in order, once the request was answered; 0 and NY_INVALID_ARGUMENT before.
size_t ny_sim_property_request_size(ny_sim_property_request_t* request);
/// One of those; NY_INVALID_ARGUMENT beyond the last one.
int32_t ny_sim_property_request_get(ny_sim_property_request_t* request, size_t index, const char** path,
                                    const char** name, const char** value);
/// The operating system's id of the agent thread that asked.
uint32_t ny_sim_property_request_thread(ny_sim_property_request_t* request);
/// Waits for the answer if there is none yet, then frees the request. Null is accepted.
void ny_sim_property_request_release(ny_sim_property_request_t* request);

// --- Values and loggers for tests of code that is handed one ------------------------------------------------------

/// Makes a variant from JSON: a string gives a narrow text, an object a table, an array an array, anything else its
/// JSON text. Owned.
int32_t ny_sim_variant_from_json(const char* json, ny_variant_t** out);

/// Makes a logger, which the caller releases.
int32_t ny_sim_logger_create(ny_logger_t** out);
/// Ends a logger.
void ny_sim_logger_release(ny_logger_t* logger);
/// How many lines were printed through the logger, each as "severity|module|file|line|function|text".
size_t ny_sim_logger_size(ny_logger_t* logger);
/// One of those; NY_INVALID_ARGUMENT beyond the last one.
int32_t ny_sim_logger_get(ny_logger_t* logger, size_t index, const char** line);

}  // extern "C"

#include "ny_sim_hostile.h"
#include "ny_sim_policy.h"
#include "ny_sim_scheduler.h"
#include "ny_sim_services.h"
#include "ny_sim_updater.h"
