// The one lock of an agent that has one.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <vector>

namespace simulator {

// Recursive, and off until it is switched on. Its owners are the thread that entered and those that it waits for. A
// thread that entered while it was off goes on without it until it leaves: an owner may wait for that thread.
class AgentLock {
public:
    void Switch(bool on);

    // Waits until the lock is free or the calling thread owns it. False when the thread goes on without it.
    bool Enter();
    // `hasEntered` is what Enter answered.
    void Leave(bool hasEntered) noexcept;

    // Makes the calling thread one more owner: the owner waits for it. Does nothing when the lock is free.
    void Share();
    // Ends what Share began.
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
