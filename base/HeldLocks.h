// Notes for the count of the bridge's locks that a thread holds. The native builds of the tests count them: none may be
// held while the agent or a module is called. The shipped DLL counts nothing.
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
