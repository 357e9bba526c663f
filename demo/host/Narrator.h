#pragma once

#include <mutex>
#include <string_view>

#include "tool/output/Terminal.h"

// Prints the story, each of its lines with the name of the actor, in lines of at most 100 columns.
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
    // The text, whose first line begins in a column where something stands before it.
    static void PrintBehind(size_t column, std::string_view text);

    const Terminal terminal;
    std::mutex mutex;
    const bool verbose;
};
