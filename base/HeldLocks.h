// Which locks of the bridge's a thread holds is counted in the checking builds: none may be held while the agent or a
// module is called. What is shipped counts nothing.
#pragma once

#ifdef COUNT_HELD_LOCKS
extern "C" {
void NoteLockTaken() noexcept;
void NoteLockLeft() noexcept;
}
#else
inline void NoteLockTaken() noexcept {}
inline void NoteLockLeft() noexcept {}
#endif
