#pragma once

#include <windows.h>

#include <atomic>
#include <cstddef>

namespace bridge {

// A number that each thread has for itself, 0 at first. No thread waits for another one.
class ThreadNumber {
public:
    constexpr ThreadNumber() noexcept = default;
    ~ThreadNumber();
    ThreadNumber(const ThreadNumber&) = delete;
    ThreadNumber& operator=(const ThreadNumber&) = delete;

    // Makes room for the numbers, if there is none yet. Raises std::bad_alloc when the system has none left.
    void Prepare();

    // 0 without room.
    size_t Get() const noexcept;
    // False, and nothing changes, without room, or when the system has no memory for this thread's first number.
    bool Set(size_t number) noexcept;

private:
    std::atomic<DWORD> index = TLS_OUT_OF_INDEXES;
};

}  // namespace bridge
