#pragma once

#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "tool/play/Story.h"

namespace tool::play {

// The modules and the options with which a story is played.
struct Cast {
    std::vector<std::filesystem::path> modules;
    bool isChecking = false;      // with the checking bridge
    std::filesystem::path trace;  // its record; empty for none
    bool isQuiet = false;         // what the modules print goes nowhere
    std::string product;          // these take the place of what the story says, when not empty
    std::string loadFunction;
    std::string unloadFunction;
};

enum class Outcome { Passed, Failed, Crashed, Hung, NotPlayed };
// "passed", "failed", "crashed", "hung", "not played"
const char* NameOf(Outcome outcome);

struct Line {
    std::string who;
    std::string text;
    bool isCall = false;
};

struct StepResult {
    nlohmann::json step;
    Outcome outcome = Outcome::NotPlayed;
    std::string failure;  // empty when it passed
    int64_t milliseconds = 0;
    std::vector<Line> lines;
    std::vector<std::string> functions;  // of the agent's that the bridge called, each once
};

struct RunResult {
    std::optional<uint32_t> seed;
    std::vector<StepResult> steps;
    // How the process ended behind the last step.
    Outcome end = Outcome::NotPlayed;
    std::string endFailure;
    std::vector<std::string> findings;  // the checking bridge's lines
    std::vector<nlohmann::json> facts;  // what "load" and "tell products" have learnt: see Player.h

    // The first thing that went wrong, or Passed.
    Outcome Worst() const;
    // The failure's text, with its step; empty when all passed.
    std::string Failure() const;
};

// Hears of a playing while it goes on.
class Audience {
public:
    virtual ~Audience() = default;
    virtual void OnBegin(size_t index, const StepResult& step) = 0;
    virtual void OnLine(const Line& line) = 0;
    virtual void OnEnd(const StepResult& step) = 0;
};

// Plays the story once, in a process of its own. Throws std::runtime_error when that could not begin.
RunResult Play(const Story& story, const Cast& cast, std::optional<uint32_t> seed, Audience* audience);

}  // namespace tool::play
