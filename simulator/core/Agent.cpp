#include "Agent.h"

namespace simulator {

namespace {

// Never destroyed: a process may end while agent threads are still in callbacks. Made when the library is loaded and
// not on first use: the sanitizer of data races does not see how the static C++ runtime orders first uses.
Agent& theAgent = *new Agent;

}  // namespace

Agent& TheAgent() {
    return theAgent;
}

}  // namespace simulator
