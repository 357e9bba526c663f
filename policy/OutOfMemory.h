#pragma once

#include <new>
#include <utility>

#include "agent/ny_agent.h"
#include "values/AgentException.h"

namespace bridge {

// Runs `body`; memory that runs out there is an agent exception with NY_OUT_OF_MEMORY. For work of the bridge's own
// between calls of a module, whose exceptions stay as they are.
template <class Body>
auto BadAllocAsAgentException(Body&& body) {
    try {
        return std::forward<Body>(body)();
    } catch (const std::bad_alloc&) {
        throw AgentException(NY_OUT_OF_MEMORY);
    }
}

}  // namespace bridge
