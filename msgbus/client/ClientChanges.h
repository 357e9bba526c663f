// Changes of agent clients: their start, their stop and their end.
//
// One change at a time runs in the process. During it the agent is called and calls back, log sinks are written to, and
// modules enter and leave. So a thread that asks for a change while one runs does not wait, be it another thread or the
// same one deeper in its stack. The thread that makes the present change makes that one next.
#pragma once

#include <windows.h>

#include <cstdint>
#include <memory>

namespace bridge {

struct NyClient;

enum class ClientChange {
    Stop,        // the agent is gone
    Start,       // the agent is there
    Unregister,  // the point product is told of a stop, and of nothing after that
    Release,     // the client lets go of the agent for good
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

// Makes the change, or leaves it to the thread that is making another. `state` goes with a start. `isWatcher` says that
// the calling thread is the client's watcher.
void ChangeClient(NyClient& client, ClientChange change, uint32_t state = 1, bool isWatcher = false) noexcept;

// Waits until no change is left to be made for the client, which Entry and Exit promise to a module. Waits only while
// the watcher of an ended instance makes changes, and at most 15 seconds; not for a module's thread that is entering or
// leaving. Does not wait inside a call from the agent, which that change may be waiting for. The caller shares the
// client.
void WaitForChangesOf(const NyClient& client) noexcept;

// Whether that thread is making a change.
bool IsChangingClients(DWORD threadId) noexcept;

}  // namespace bridge
