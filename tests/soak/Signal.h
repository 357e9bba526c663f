#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

// A signal that threads give and another one waits for, again and again.
class Signal {
public:
    void Give() {
        const std::lock_guard guard(mutex);
        isGiven = true;
        given.notify_one();
    }

    // Takes what was given; false when nothing was in time.
    bool Take(std::chrono::milliseconds limit) {
        std::unique_lock guard(mutex);
        const bool isTaken = given.wait_for(guard, limit, [this] { return isGiven; });
        isGiven = false;
        return isTaken;
    }

private:
    std::mutex mutex;
    std::condition_variable given;
    bool isGiven = false;
};
