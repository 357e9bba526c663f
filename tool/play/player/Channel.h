#pragma once

#include <mutex>
#include <nlohmann/json.hpp>
#include <string_view>

namespace tool::play {

// How the player's process tells what happens to the process that has started it: one JSON object a line. Any thread.
class Channel {
public:
    explicit Channel(void* pipeHandle) : pipe(pipeHandle) {}

    void Send(const nlohmann::json& event);
    // `who` does or says something: agent, bridge, module or player.
    void Tell(std::string_view who, std::string_view text);
    // From now on an exception that nobody catches, on any thread, is told before the process ends.
    void TellOfCrashes() const;

private:
    void* const pipe;
    std::mutex mutex;
};

}  // namespace tool::play
