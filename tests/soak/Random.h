#pragma once

#include <cstdint>
#include <random>

// Numbers that follow from a seed, the same with every compiler and library.
class Random {
public:
    explicit Random(uint64_t seed) : engine(seed) {}

    // From 0 to count - 1.
    uint32_t Below(uint32_t count) { return static_cast<uint32_t>(engine() % count); }
    bool OneIn(uint32_t count) { return Below(count) == 0; }

private:
    std::mt19937_64 engine;
};
