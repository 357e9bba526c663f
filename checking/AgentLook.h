// Why the bridge has no agent, or not all of it: what only looks like a module that is not asked.
#pragma once

#include <cstdint>
#include <optional>

namespace checking {

// Looks where the bridge looks for an agent, and tells what is missing there.
void LookForAgent();

// A library of the agent's could not be opened; `code` is the system's.
void NoteLibraryNotOpened(const char* path, uint32_t code) noexcept;
// The code of the agent's last refusal on the calling thread since the last Forget. One that stands for a function that
// could not be reached is told.
void NoteRefusal(int32_t code) noexcept;
void ForgetRefusal() noexcept;
std::optional<int32_t> LastRefusal() noexcept;

}  // namespace checking
