// How a playing is told: on the screen while it goes on, and as files for machines at its end.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tool/output/Terminal.h"
#include "tool/play/Playing.h"

namespace tool::play {

// Prints each step, and what happens in it, as it happens.
class Printer : public Audience {
public:
    explicit Printer(bool hasCalls) : showsCalls(hasCalls) {}

    void OnBegin(size_t index, const StepResult& step) override;
    void OnLine(const Line& line) override;
    void OnEnd(const StepResult& step) override;
    // Prints the outcome of a playing.
    void OnOver(const RunResult& run);
    // Prints a line without a name in front.
    void Say(const std::string& text, Outcome outcome);

private:
    const Terminal terminal;
    const bool showsCalls;
};

// All playings of a story as one JSON object.
nlohmann::ordered_json MakeJson(const std::string& story, const std::vector<RunResult>& runs);
// The same as the XML of JUnit: a suite for each playing, a case for each step.
std::string MakeJUnit(const std::string& story, const std::vector<RunResult>& runs);

}  // namespace tool::play
