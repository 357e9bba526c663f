#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace simulator {

// Runs the work on a new thread of the agent's and returns the operating system's id of that thread. The thread keeps
// this library in memory until it has ended, whatever its callbacks unload. Throws std::bad_alloc when no thread
// can be made; the work must not throw.
uint32_t StartAgentThread(std::function<void()> work);

// Waits until no such thread has work left. False when that did not happen within the time.
bool WaitForAgentThreads(std::chrono::milliseconds time);

}  // namespace simulator
