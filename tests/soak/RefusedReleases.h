#pragma once

#include <cstddef>
#include <map>

#include "ny_simulator.h"

// How often the agent refused to take back a handle, by kind; NY_SIM_ANY is the sum. At most so many handles stay with
// it for good: fewer where several references to one handle were refused.
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
