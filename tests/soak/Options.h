#pragma once

#include <cstdint>

// What the program was asked for.
struct SoakOptions {
    uint64_t seed = 0;
    uint64_t operations = 300;
};

const SoakOptions& Options();
