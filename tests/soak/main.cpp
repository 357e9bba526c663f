// soak [--operations N] [--seed N] [--tame | --hostility KIND...]: random life cycles of modules and agent, under the
// load of many threads.
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "soak/Options.h"

namespace {

SoakOptions options;

constexpr bool HostileKinds::*allKinds[] = {&HostileKinds::errors, &HostileKinds::lateCalls,
                                            &HostileKinds::callsInRegister, &HostileKinds::lostFiles};
const std::vector<std::string> namesOfKinds = {"errors", "late", "inside", "files"};

void SwitchOn(const std::vector<std::string>& names) {
    for (size_t i = 0; i < namesOfKinds.size(); ++i) {
        options.hostile.*allKinds[i] |= std::find(names.begin(), names.end(), namesOfKinds[i]) != names.end();
    }
}

uint64_t NewSeed() {
    return std::random_device{}();
}

}  // namespace

const SoakOptions& Options() {
    return options;
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    options.seed = NewSeed();
    CLI::App app("Random life cycles of modules and agent, under the load of many threads");
    app.add_option("--operations", options.operations, "How many operations, 300 when it is not said")
        ->check(CLI::PositiveNumber);
    app.add_option("--seed", options.seed, "What all chance follows from; a new one when it is not said");
    bool isTame = false;
    std::vector<std::string> kinds = namesOfKinds;
    CLI::Option* const tame = app.add_flag("--tame", isTame, "The agent always keeps to its contract");
    app.add_option("--hostility", kinds,
                   "How it breaks its contract now and then, every way when it is not said: errors, late calls, calls "
                   "inside register, lost files")
        ->check(CLI::IsMember(namesOfKinds))
        ->excludes(tame);
    CLI11_PARSE(app, argc, argv);
    if (!isTame) {
        SwitchOn(kinds);
    }
    std::cout << "seed " << options.seed << ", " << options.operations << " operations" << std::endl;
    return RUN_ALL_TESTS();
}
