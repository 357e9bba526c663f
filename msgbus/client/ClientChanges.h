// Changes of agent clients: their start, their stop and their end.
//
// One change at a time runs in the process. It reaches far: the agent is called and calls back, log sinks are written
// to, and modules enter and leave from there. So a thread that asks for a change while one runs, be it another thread
// or the same one deeper in its stack, waits for nothing: the thread that is at it makes that change next.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>

namespace bridge {

struct NyClient;

enum class ClientChange {
    Stop,        // the agent is gone
    Start,       // the agent is there
    Unregister,  // the point product is not told any more; of a stop before that
    Release,     // the agent is let go of, for good
};

// The changes that one client waits for, in the order of ClientChange.
struct PendingChanges {
    bool mustStop = false;
    uint32_t startState = 0;  // what the point product is told of the start; 0 for no start
    bool mustUnregister = false;
    bool mustRelease = false;

    bool isQueued = false;
    NyClient* next = nullptr;
    std::shared_ptr<void> client;  // shared until it is done
};

// Makes the change, or leaves it to the thread that is at one. `state` goes with a start.
// `isWatcher` says that the calling thread is the client's watcher.
void ChangeClient(NyClient& client, ClientChange change, uint32_t state = 1, bool isWatcher = false) noexcept;

// Returns when nothing is left to be done for the client: for a thread that promises it to a module. Waits at most 15
// seconds for a change that a watcher is making: of an instance that has ended. It does not wait inside a call of the
// agent's, which that change may be waiting for, nor for a module's thread that is entering or leaving. The caller
// shares the client.
void WaitForChangesOf(const NyClient& client) noexcept;

// Whether that thread is making a change.
bool IsChangingClients(DWORD threadId) noexcept;

}  // namespace bridge
