// The flows with a fault in every place where one kind of thing can fail: generated from what a good run does.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "flows/Flow.h"

// One kind of fault. What counts and fails are the calls that the bridge makes itself.
struct FaultKind {
    std::string name;  // of what fails
    // Counts from 1 again, and has the nth call fail, once or from then on; none for 0.
    std::function<void(size_t nth, bool isOnce)> fail;
    std::function<void()> rest;      // nothing fails any more
    std::function<size_t()> failed;  // calls that failed since `fail`
    // Called when everything is over; what is still there that was not before the run, which it takes away. Empty when
    // nothing is.
    std::function<std::string()> takeLeftOver = [] { return std::string(); };
    // Whether the line, which no good run has and no other kind of fault explains, is one of this fault.
    std::function<bool(const std::string& line)> explains = [](const std::string&) { return false; };
};

struct FaultCount {
    size_t cases = 0;
    size_t missed = 0;  // cases in which the bridge did not come to the call that was to fail

    FaultCount& operator+=(const FaultCount& other);
};

// Runs the flow with every fault of that kind: each of the `calls` that a good run makes fails once, and from then on.
// Of every case it is checked that all answers are such as a fault may have, that nothing is left over, and that the
// flow then runs as ever. Ends the process with the case's name when it takes longer than a minute.
//
// Without the environment variable FLOWS_WHOLE, some of the cases: evenly spread, and few enough for every day.
FaultCount RunFaultCases(FlowWorld& world, const FlowKind& flow, const FlowOutcome& good, size_t calls,
                         const FaultKind& fault);

// Says how many cases there were, in a line that scripts look for.
void PrintCount(const std::string& what, const FaultCount& count);
