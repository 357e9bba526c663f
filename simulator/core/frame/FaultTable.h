// The answers that tests have injected.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "ny_simulator.h"

namespace simulator {

class FaultTable {
public:
    // Sets the function's fault in the place of an earlier one; `nth` counts from 1.
    void Set(std::string_view function, uint32_t nth, int32_t code, ny_sim_fault_mode mode);
    // Counts one call of the function. Returns the code that the call has to answer, if any.
    std::optional<int32_t> Take(std::string_view function);
    void Clear();
    // How many calls of the function were given a code since the object was made.
    size_t CountTaken(std::string_view function) const;

private:
    struct Fault {
        uint32_t callsLeft;  // until the fault, its own call included
        int32_t code;
        ny_sim_fault_mode mode;
    };

    mutable std::mutex mutex;
    std::map<std::string, Fault, std::less<>> faults;
    std::map<std::string, size_t, std::less<>> taken;
};

}  // namespace simulator
