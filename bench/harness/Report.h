#pragma once

#include <string>
#include <vector>

#include "bench/harness/Measure.h"

namespace bench {

// What is measured once and not raced: an amount of memory, a number of calls, the time that one in a hundred takes.
struct Amount {
    std::string section;
    std::string what;
    double size = 0;
    std::string unit;
    double ours = 0;
    std::vector<std::pair<std::string, double>> others;  // the floor first
    std::string aim;                                     // in words, empty without one
    bool isMet = true;
};

// Collects what was measured, shows each line as it comes, and writes all of it as JSON.
class Report {
public:
    void Add(const Result& result);
    void Add(const Amount& amount);

    // Throws std::runtime_error when the file cannot be written.
    void Write(const std::string& file) const;

private:
    std::vector<Result> results;
    std::vector<Amount> amounts;
};

}  // namespace bench
