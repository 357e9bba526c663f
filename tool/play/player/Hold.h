#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>

namespace tool::play {

// Holds up those who call a function of the agent's. Any thread.
class Hold {
public:
    // Those who come from now on wait until Unblock.
    void Block();
    void Unblock();
    // Those who come from now on stay so much longer.
    void Delay(std::chrono::milliseconds newDelay);
    // How many wait.
    size_t Waiting() const;
    // Whether somebody waits, within the limit.
    bool WaitUntilSomebodyWaits(std::chrono::milliseconds limit);
    // What a caller does.
    void Pass();

private:
    mutable std::mutex mutex;
    std::condition_variable changed;
    bool isBlocked = false;
    size_t waiting = 0;
    std::chrono::milliseconds delay{0};
};

// One for each function. Lives as long as the process: callers may still be inside.
class Holds {
public:
    // Throws vsmsgbus::testing::Failure when the simulated agent has no such function.
    Hold& Of(const std::string& function);
    void UnblockAll();

private:
    std::map<std::string, Hold> holds;
};

}  // namespace tool::play
