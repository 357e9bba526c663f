// The threads that are inside a callback.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

#include "simulator/core/threads/AgentLock.h"

namespace simulator {

// Each registration has one. Several threads may be inside. The thread that ends the registration closes the gate and
// waits until the others have left.
class CallbackGate {
public:
    // While on, WaitForOthers returns at once. Off at first.
    static void SetImpatient(bool on);

    // The calling thread is about to run a callback; false when the gate is closed, and then it must not.
    bool Enter();
    // The calling thread's callback, the one entered last, has returned.
    void Leave() noexcept;

    // From now on Enter answers false.
    void Close();
    // Returns when no other thread is inside. A callback may thus end its own registration.
    void WaitForOthers();

private:
    std::mutex mutex;
    std::condition_variable left;
    std::vector<uint32_t> threadsInside;
    bool closed = false;
};

// While it lives, the calling thread is inside the gate and has the agent's one lock, if that is on.
class CallbackPass {
public:
    explicit CallbackPass(CallbackGate& callbackGate) : gate(callbackGate), entered(gate.Enter()) {}
    ~CallbackPass() {
        if (entered) {
            gate.Leave();
        }
    }
    CallbackPass(const CallbackPass&) = delete;
    CallbackPass& operator=(const CallbackPass&) = delete;

    // Whether the callback may run.
    explicit operator bool() const { return entered; }

private:
    // Taken before the gate is entered: the lock's owner may wait until the threads inside have left.
    AgentLockHold hold;
    CallbackGate& gate;
    bool entered;
};

}  // namespace simulator
