#pragma once

#include <mutex>
#include <nlohmann/json.hpp>
#include <string_view>

namespace tool::play {

// The pipe by which the player's process tells the process that has started it what happens: one JSON object a line.
// Any thread.
class Channel {
public:
    explicit Channel(void* pipeHandle) : pipe(pipeHandle) {}

    void Send(const nlohmann::json& event);
    // Tells that `who`, which is agent, bridge, module or player, does or says something.
    void Tell(std::string_view who, std::string_view text);
    // From now on an exception that is not caught, on any thread, is told before the process ends.
    void TellOfCrashes() const;

private:
    void* const pipe;
    std::mutex mutex;
};

}  // namespace tool::play
