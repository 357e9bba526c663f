// Who is inside a callback at the moment.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <vector>

#include "simulator/core/threads/AgentLock.h"

namespace simulator {

// One for each thing that can be unregistered: its callbacks go through the gate one by one or together, and whoever
// ends it closes the gate and waits until the others are out.
class CallbackGate {
public:
    // Whether no gate waits for callbacks any more. Off at first.
    static void SetImpatient(bool on);

    // The calling thread is about to run a callback; false when the gate is closed, and then it must not.
    bool Enter();
    // The calling thread's callback, the one entered last, has returned.
    void Leave() noexcept;

    // From now on Enter answers false.
    void Close();
    // Returns when no thread other than the calling one is inside, so a callback may end what it was called for; at
    // once when the agent is impatient.
    void WaitForOthers();

private:
    std::mutex mutex;
    std::condition_variable left;
    std::vector<uint32_t> threadsInside;
    bool closed = false;
};

// A callback's way through the gate, with the agent's one lock held, if it has one.
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
    // Taken first: who has the lock may wait at the gate.
    AgentLockHold hold;
    CallbackGate& gate;
    bool entered;
};

}  // namespace simulator
