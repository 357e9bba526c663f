#include "bench/harness/Program.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

namespace bench {

namespace {
// Many short turns rather than few long ones: most of them escape what else the machine does.
constexpr Effort wholeEffort{41, 0.004};
constexpr Effort quickEffort{11, 0.001};
}  // namespace

int RunProgram(int argc, char** argv, const std::vector<Measurement>& measurements) {
    bool isQuick = false;
    std::string file;
    std::vector<std::string> only;
    CLI::App app("Measures the bridge against the floor and against what a module's author would write instead.");
    app.add_flag("--quick", isQuick, "A short form: fewer rounds and sizes");
    app.add_option("--json", file, "Where to write the figures");
    app.add_option("--only", only, "The sections to measure; all without it");
    CLI11_PARSE(app, argc, argv);
    try {
        Session session{isQuick ? quickEffort : wholeEffort, isQuick, {}};
        for (const Measurement& measurement : measurements) {
            if (only.empty() || std::find(only.begin(), only.end(), measurement.section) != only.end()) {
                measurement.run(session);
            }
        }
        if (!file.empty()) {
            session.report.Write(file);
        }
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}

}  // namespace bench
