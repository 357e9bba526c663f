#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace tool::play {

// Holds up the threads that call one function of the agent's. Any thread.
class Hold {
public:
    // Threads that call from now on wait until Unblock.
    void Block();
    void Unblock();
    // Threads that call from now on are delayed by this time.
    void Delay(std::chrono::milliseconds newDelay);
    // How many threads wait.
    size_t Waiting() const;
    // Whether a thread comes to wait within the limit.
    bool WaitUntilSomebodyWaits(std::chrono::milliseconds limit);
    // Called by a thread that calls the function: waits as Block and Delay say.
    void Pass();

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    bool isBlocked = false;
    size_t waiting = 0;
    std::chrono::milliseconds delay{0};
};

// The holds, one for each function. They live as long as the process: threads may still wait in them.
class Holds {
public:
    // Throws vsmsgbus::testing::Failure when the simulated agent has no such function.
    Hold& Of(const std::string& function);
    void UnblockAll();

private:
    std::map<std::string, Hold> holds;
};

}  // namespace tool::play
