#pragma once

#include <functional>

#include "bench/harness/Report.h"

namespace bench {

// What the measurements of a program are given.
struct Session {
    Effort effort;
    bool isQuick;  // a few sizes instead of all
    Report report;

    void Race(const Case& measured) { report.Add(Measure(measured, effort)); }
};

// The main function of a program of measurements: understands `--quick`, `--only SECTION` and `--json FILE`, runs
// `measurements(session)`, and says of a failure what it was. The exit code of the program.
struct Measurement {
    const char* section;
    std::function<void(Session& session)> run;
};
int RunProgram(int argc, char** argv, const std::vector<Measurement>& measurements);

}  // namespace bench
