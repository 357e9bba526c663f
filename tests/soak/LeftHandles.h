#pragma once

#include <cstddef>
#include <map>

#include "ny_simulator.h"

// The handles that the agent did not take back, and so keeps for good, by kind.
class LeftHandles {
public:
    // Handles that are alive now count as kept: an earlier test of the process may have had releases refused.
    LeftHandles();

    // To be called while no thread uses the agent. A test failure when there are more handles than at the last call and
    // releases that were refused since. There may be fewer: several references to one handle are one.
    void Check();

    size_t Of(ny_sim_handle_kind kind) const;

private:
    std::map<ny_sim_handle_kind, size_t> left;
    // Releases since the process began.
    std::map<ny_sim_handle_kind, size_t> refused;
};

// From NY_SIM_ANY, which is all of them, on.
template <class Look>
void ForEachKindOfHandle(Look&& look) {
    for (int32_t kind = NY_SIM_ANY; kind <= NY_SIM_POLICY_ITERATOR; ++kind) {
        look(static_cast<ny_sim_handle_kind>(kind));
    }
}
