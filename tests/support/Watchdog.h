#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>

// Ends the process, saying so, when it lives longer than its limit: for what must not hang.
class Watchdog {
public:
    explicit Watchdog(std::string whatMustNotHang, std::chrono::seconds limit = std::chrono::seconds(60))
        : watching([this, what = std::move(whatMustNotHang), limit] { Watch(what, limit); }) {}
    ~Watchdog() {
        {
            const std::lock_guard guard(mutex);
            isOver = true;
        }
        over.notify_all();
        watching.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    void Watch(const std::string& what, std::chrono::seconds limit) {
        std::unique_lock guard(mutex);
        if (!over.wait_for(guard, limit, [this] { return isOver; })) {
            std::fprintf(stderr, "does not come to an end: %s\n", what.c_str());
            std::abort();
        }
    }

    std::mutex mutex;
    std::condition_variable over;
    bool isOver = false;
    std::thread watching;
};
