#pragma once

#include <sched.h>

#include <atomic>

namespace win32 {

// A lock for the tables of the layer that all threads share. Code that uses it is compiled without the thread
// sanitizer, see CMakeLists.txt, which then does not take it for something that orders the program's threads: on
// Windows nothing does there. Only for a few instructions at a time.
class SystemLock {
public:
    void lock() {
        while (isTaken.test_and_set(std::memory_order_acquire)) {
            ::sched_yield();
        }
    }
    void unlock() { isTaken.clear(std::memory_order_release); }

private:
    std::atomic_flag isTaken;
};

}  // namespace win32
