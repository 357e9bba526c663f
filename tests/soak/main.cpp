// soak [--operations N] [--seed N]: random life cycles of modules and agent, under the load of many threads.
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <iostream>
#include <random>

#include "soak/Options.h"

namespace {

SoakOptions options;

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
    CLI11_PARSE(app, argc, argv);
    std::cout << "seed " << options.seed << ", " << options.operations << " operations" << std::endl;
    return RUN_ALL_TESTS();
}
