// The one lock of an agent that has one.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace simulator {

// Recursive, and off until it is switched on. A thread that its owner waits for shares it.
class AgentLock {
public:
    void Switch(bool on);

    // Waits until the lock is free or the calling thread's. False when it is off: there is nothing to leave then.
    bool Enter();
    void Leave() noexcept;

    // The calling thread works for the thread that has the lock and that waits for it: the lock is its own, too. Does
    // nothing when nobody has it.
    void Share();
    // The calling thread has shared enough.
    void EndShare() noexcept;

private:
    bool IsOwner(uint32_t threadId) const;

    std::mutex mutex;
    std::condition_variable left;
    bool isOn = false;
    size_t depth = 0;
    std::vector<uint32_t> owners;  // empty when depth is 0
};

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
