#pragma once

#include <cstdint>
#include <functional>

namespace simulator {

// Runs the work on a new thread of the agent's and returns the operating system's id of that thread. The thread keeps
// this library in memory until it has ended, whatever its callbacks unload. Throws std::bad_alloc when there is no
// thread to be had; the work must not throw.
uint32_t StartAgentThread(std::function<void()> work);

}  // namespace simulator
