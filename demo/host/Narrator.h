#pragma once

#include <mutex>
#include <string_view>

// Prints the story, one line at a time, each with who acts.
class Narrator {
public:
    explicit Narrator(bool isVerbose) : verbose(isVerbose) {}

    void Say(std::string_view actor, std::string_view line);
    // A line that only a verbose story has.
    void Detail(std::string_view actor, std::string_view line);
    // A detail of the line before, without an actor.
    void Continue(std::string_view line);

    bool IsVerbose() const { return verbose; }

private:
    std::mutex mutex;
    const bool verbose;
};
