// An event that happens once and that threads can wait for.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace simulator {

class Signal {
public:
    void Set() {
        const std::lock_guard lock(mutex);
        set = true;
        changed.notify_all();
    }

    bool IsSet() const {
        const std::lock_guard lock(mutex);
        return set;
    }

    void Wait() const {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return set; });
    }

    // False when it was not set within that time.
    bool WaitFor(std::chrono::milliseconds time) const {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, time, [this] { return set; });
    }

private:
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    bool set = false;
};

}  // namespace simulator
