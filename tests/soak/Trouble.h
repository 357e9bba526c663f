// Times in which the agent does not keep to its contract: what a bridge promises of it is not certain then.
#pragma once

#include <atomic>
#include <cstdint>

// From Begin to End, which is when everything that the trouble may have left is gone. One thread begins and ends it.
class Trouble {
public:
    static void Begin() { ++changes; }
    static void End() { ++changes; }
    static bool IsOn() { return changes % 2 != 0; }

    // For a check that takes time: whether there was no trouble since this object was made.
    class Absence {
    public:
        bool Lasts() const { return begun % 2 == 0 && begun == changes; }

    private:
        const uint64_t begun = changes;
    };

private:
    static inline std::atomic<uint64_t> changes = 0;
};
