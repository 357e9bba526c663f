// Measuring side by side: the ways of doing one thing take turns, round by round, so that whatever else the machine
// does falls on all of them alike. What is compared is therefore the ratio within a round; a figure is the median over
// all rounds, and comes with its range.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bench {

// One way of doing a thing: does it `count` times and gives the seconds that this took.
struct Contender {
    std::string name;
    std::function<double(size_t count)> run;
};

// One line of the table.
struct Case {
    std::string section;          // what is measured
    std::string what;             // this line of it
    double size = 0;              // how many there are of what the section is about; for the scaling curves
    double unitsPerRun = 1;       // a figure is the time of one unit
    std::vector<Contender> ways;  // ours first, then the floor, then what else there is
    std::optional<double> aim;    // the greatest ratio of ours to the floor
    bool mustBeatPeers = false;   // no peer faster
};

// Median and range of one figure over the rounds.
struct Figure {
    double median = 0;
    double least = 0;
    double greatest = 0;
};

struct Result {
    Case measured;
    std::vector<Figure> nanoseconds;  // of one unit, for each way
    std::vector<Figure> ratios;       // of ours to each way
};

struct Effort {
    size_t rounds;
    double secondsPerTurn;  // how long one way's turn in a round is, at least
};

// Figure of numbers that were measured; there must be at least one.
Figure FigureOf(std::vector<double> numbers);

// Runs each way once to warm it up and to see how often it must be run in a turn, then all rounds.
Result Measure(const Case& measured, const Effort& effort);

// The seconds that one call of `body` takes.
double SecondsOf(const std::function<void()>& body);

// Runs `body(thread, count)` on so many threads at once, each of which does it `count` times, and gives the seconds
// that it took a thread, as the mean of all.
double SecondsOnThreads(size_t threads, size_t count, const std::function<void(size_t thread, size_t count)>& body);

}  // namespace bench
