// The one lock of an agent that has one.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace simulator {

// Recursive, and off until it is switched on. A thread that its owner waits for shares it. A thread that is inside
// since the lock was off goes on without it: its owner may wait for that thread.
class AgentLock {
public:
    void Switch(bool on);

    // Waits until the lock is free or the calling thread's. False when the thread goes on without it.
    bool Enter();
    // With what Enter answered.
    void Leave(bool hasEntered) noexcept;

    // The calling thread works for the thread that has the lock and that waits for it: the lock is its own, too. Does
    // nothing when nobody has it.
    void Share();
    // The calling thread has shared enough.
    void EndShare() noexcept;

private:
    bool IsOwner(uint32_t threadId) const;
    bool GoesWithout(uint32_t threadId) const;

    std::mutex mutex;
    std::condition_variable left;
    bool isOn = false;
    size_t depth = 0;
    std::vector<uint32_t> owners;   // empty when depth is 0
    std::vector<uint32_t> without;  // the threads inside without the lock, once for each Enter
};

// The one lock of this process; lives as TheFrame does.
AgentLock& TheAgentLock();

// While it lives, the calling thread has the lock, if that is on.
class AgentLockHold {
public:
    AgentLockHold();
    ~AgentLockHold();
    AgentLockHold(const AgentLockHold&) = delete;
    AgentLockHold& operator=(const AgentLockHold&) = delete;

private:
    bool entered;
};

}  // namespace simulator
