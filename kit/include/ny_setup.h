/// @file
/// A machine to try modules on: a HKEY_LOCAL_MACHINE of the process's own, and the simulated agent installed, upgraded
/// and removed on it. ny_setup.dll.
///
/// The simulated agent itself is commanded through ny_simulator.h; the agent's libraries, in several builds, stand in
/// one folder each (full, older, lacking, empty, text).
///
/// Conventions
///
///  1. Plain C, so that every compiler may be used. No function lets an exception out.
///  2. Functions that return int32_t answer NY_OK (0) or a code: NY_INVALID_ARGUMENT for a null or empty argument,
///     NY_OUT_OF_MEMORY, or one of ny_setup_code. ny_setup_last_error() then says why.
///  3. Texts that go in are zero-terminated UTF-8 and may be freed afterwards. The comment
///     of a function that gives a text says who owns it.
///  4. Any thread may call. Calls for one machine come one after the other.
#pragma once

#include "ny_agent.h"

extern "C" {

/// The codes of these functions alone, beside the agent's own.
enum ny_setup_code : int32_t {
    NY_SETUP_FAILED = 1101,          ///< the registry or the file system refused
    NY_SETUP_MACHINE_EXISTS = 1102,  ///< the process has a machine
};

/// Such a machine. Opaque.
typedef struct ny_setup_machine ny_setup_machine_t;

/// Makes the machine, without an agent. Until it is destroyed, HKEY_LOCAL_MACHINE of the process is an empty key of the
/// current user's, both views of it alike: no administrator is needed, and nothing of the real machine is changed. Keys
/// that were opened before stay what they are. One machine at a time in a process.
/// @param builds  the folder that holds the agent's builds; null for the folder agent/ beside the folder of the program
/// @param out     gets the machine, which the caller destroys; untouched on failure
/// @returns NY_SETUP_MACHINE_EXISTS while there is another one
int32_t ny_setup_machine_create(const char* builds, ny_setup_machine_t** out);

/// Removes the agent if it is installed, and ends the machine: HKEY_LOCAL_MACHINE is the real one again, what was
/// written is deleted, and so are the installed files. Files that are in use stay in the folder for temporary files. No
/// other thread may be in a call for the machine. Null is accepted.
/// @returns NY_SETUP_FAILED when something could not be deleted; the machine has ended nevertheless
int32_t ny_setup_machine_destroy(ny_setup_machine_t* machine);

/// Why the last call of the calling thread that failed did, in one line of UTF-8; empty when none has. Valid until the
/// thread's next call that fails.
const char* ny_setup_last_error(void);

/// Installs the agent as its installer does: the libraries of the build are copied into a new folder of the machine's,
/// then the runtime path is written, and then the version, which is what modules that wait for the agent are woken by.
/// @param machine  of ny_setup_machine_create
/// @param version  as in "5.7.0"; also a part of the folder's name
/// @param build    the name of the build's folder; null for "full"
int32_t ny_setup_install(ny_setup_machine_t* machine, const char* version, const char* build);

/// The same for a machine that has an agent. The files of the earlier version stay until the agent is removed, because
/// they may be in use.
int32_t ny_setup_upgrade(ny_setup_machine_t* machine, const char* version, const char* build);

/// Removes the agent: the version, then the runtime path with its key, then the installed files. Files that are in use
/// are deleted when the machine is destroyed. An agent that is not there counts as removed.
int32_t ny_setup_remove(ny_setup_machine_t* machine);

/// The folder of the last installation, UTF-8; empty when no agent is installed, and for null. Valid until the
/// machine's next install, upgrade or remove.
const char* ny_setup_current_folder(ny_setup_machine_t* machine);

/// A single step, for an agent that is half there: writes the version, and the agent's key if it is missing.
int32_t ny_setup_write_version(ny_setup_machine_t* machine, const char* version);
/// A single step: deletes the version. Done as well when there was none.
int32_t ny_setup_delete_version(ny_setup_machine_t* machine);
/// A single step: makes the agent's key, without a version.
int32_t ny_setup_create_agent_key(ny_setup_machine_t* machine);
/// A single step: deletes the agent's key with everything below it. Done as well when there was none.
int32_t ny_setup_delete_agent_key(ny_setup_machine_t* machine);
/// Has modules that wait for a change of the agent look again: writes a value that means nothing into the agent's key,
/// if there is one. A change that was made before the bridge began to watch the key is otherwise seen with the next
/// change, or after 15 seconds.
int32_t ny_setup_touch_agent_key(ny_setup_machine_t* machine);
/// A single step: writes the folder in which the agent's libraries are looked for. NY_SETUP_FAILED for one that is not
/// plain ASCII.
int32_t ny_setup_write_runtime_path(ny_setup_machine_t* machine, const char* folder);
/// A single step: deletes that. Done as well when there was none.
int32_t ny_setup_delete_runtime_path(ny_setup_machine_t* machine);

}  // extern "C"
