// Notes of the bridge's locks as a thread takes and leaves them. The native builds of the tests count them: none may be
// held while the agent or a module is called. The shipped DLL counts nothing.
#pragma once

#ifdef COUNT_HELD_LOCKS
extern "C" {
void NoteLockTaken(const void* lock) noexcept;
void NoteLockLeft() noexcept;
}
#else
inline void NoteLockTaken(const void* /*lock*/) noexcept {}
inline void NoteLockLeft() noexcept {}
#endif
