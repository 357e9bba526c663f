#include "Agent.h"

namespace simulator {

Agent& TheAgent() {
    // Never destroyed: a process may end while agent threads are still in callbacks.
    static auto* const agent = new Agent;
    return *agent;
}

}  // namespace simulator
