#pragma once

#include <cstddef>
#include <map>

#include "ny_simulator.h"

// The handles that the agent refused to take back, which stay with it for good, by kind; NY_SIM_ANY is their sum.
class RefusedReleases {
public:
    // Adds those of the call record, which is to be cleared next.
    void AddRecorded();

    size_t Of(ny_sim_handle_kind kind) const {
        const auto found = refused.find(kind);
        return found != refused.end() ? found->second : 0;
    }

private:
    std::map<ny_sim_handle_kind, size_t> refused;
};
