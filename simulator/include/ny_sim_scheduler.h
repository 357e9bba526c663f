/// @file
/// Control interface of the simulated agent's scheduler: tasks as data, and what the agent does with them. Part of
/// ny_simulator.h, whose conventions hold.
///
/// A task as the agent's server would keep it, in JSON:
///
///     [
///         {
///             "id": "scan-1",
///             "product": "SAMPLE__1000",
///             "name": "Scan of the documents",
///             "type": "OnDemandScan",
///             "settings": {
///                 "Scan": {"Folder": "C:\\Documents", "Patterns": "*.doc;*.pdf", "MaximumFiles": 1000},
///                 "Report": {"Progress": "TRUE"}
///             },
///             "accessors": {"get_name": "absent", "get_section": "null", "get_setting": 77}
///         }
///     ]
///
/// "id" and "product" are needed. A task without a name or a type gives null for it; one without settings has an empty
/// table. Values are made as ny_sim_variant_from_json makes them: what is no text becomes its JSON text, except that
/// objects and arrays become tables and arrays. "accessors" is for tests: it names accessors that the task object lacks
/// (its method is null), that answer NY_OK and give null, or that answer a code. A key that is not listed here is
/// refused.
///
/// The accessors of a task object are recorded and can be made to fail like agent functions, under the names
/// "ny_task.get_id", "ny_task.get_name", "ny_task.get_setting", "ny_task.get_section" and "ny_task.get_settings". Their
/// code is in ny_client.dll and goes with it. get_setting and get_section answer NY_INVALID_ARGUMENT for a section or a
/// setting that the task does not have, and for null names.
#pragma once

#include "ny_agent.h"

extern "C" {

// --- Tasks --------------------------------------------------------------------------------------------------------

/// Puts the tasks of a JSON text in the place of all that there are; requests under way keep theirs.
/// NY_INVALID_ARGUMENT, with nothing changed, for what is not of the form above or has one id twice. ny_sim_reset
/// forgets all tasks.
int32_t ny_sim_tasks_from_json(const char* json);

/// Whether the product has callbacks registered for exactly that type, with any client: 1 or 0. A null type asks for a
/// registration for every type.
int32_t ny_sim_has_task_callbacks(const char* productId, const char* taskType);

/// Task objects that are lent to callbacks at the moment.
size_t ny_sim_lent_tasks(void);

// --- Requests -----------------------------------------------------------------------------------------------------

/// The operations that the agent asks for with a task.
enum ny_sim_task_operation : int32_t {
    NY_SIM_TASK_EXECUTE = 0,
    NY_SIM_TASK_STOP,
    NY_SIM_TASK_REMOVE,
    NY_SIM_TASK_UPDATE_STATUS,
};

/// A request of a task. Opaque.
typedef struct ny_sim_task_request ny_sim_task_request_t;

/// The agent has the task's product execute, stop, remove or re-query the task, on a thread of its own: the callback
/// registered for the task's type, or else the one for every type, is called. Requests of one task run side by side.
/// Returns at once with the request, which the caller releases; NY_INVALID_ARGUMENT for an unknown task or operation,
/// NY_SIM_NOT_REGISTERED when there is no such callback; both without a request.
int32_t ny_sim_request_task(const char* taskId, ny_sim_task_operation operation, ny_sim_task_request_t** out);
/// Waits at most `milliseconds` for the product's answer: NY_OK with the callback's result in `answer` (may be null),
/// or NY_SIM_TIMEOUT. A registration that ended before the thread came to it answers NY_SIM_NOT_REGISTERED.
int32_t ny_sim_task_request_wait(ny_sim_task_request_t* request, uint32_t milliseconds, int32_t* answer);
/// The operating system's id of the agent thread.
uint32_t ny_sim_task_request_thread(ny_sim_task_request_t* request);
/// Waits for the answer if there is none yet, then frees the request. Null is accepted.
void ny_sim_task_request_release(ny_sim_task_request_t* request);

// --- Reports ------------------------------------------------------------------------------------------------------

/// One call of ny_scheduler_update_task_status that was answered NY_OK. Ids of unknown tasks are taken as well.
typedef struct ny_sim_task_report {
    const char* taskId;  ///< valid until the reports are cleared
    int32_t status;      ///< what was told
    uint32_t threadId;   ///< of the thread that reported
    uint64_t time;       ///< milliseconds since 1970, UTC
} ny_sim_task_report_t;

/// The reports since the last clear or ny_sim_reset, in the order in which they came.
size_t ny_sim_task_report_count(void);
int32_t ny_sim_get_task_report(size_t index, ny_sim_task_report_t* out);  ///< NY_INVALID_ARGUMENT beyond the last one
/// The last report about that task; NY_INVALID_ARGUMENT when there is none.
int32_t ny_sim_last_task_report(const char* taskId, ny_sim_task_report_t* out);
/// Waits at most `milliseconds` until there are `count` reports: one more than were counted is the next one. NY_OK, or
/// NY_SIM_TIMEOUT.
int32_t ny_sim_wait_task_reports(size_t count, uint32_t milliseconds);
/// Forgets the reports.
void ny_sim_clear_task_reports(void);

}  // extern "C"
