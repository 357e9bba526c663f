#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>

#include "support/Event.h"

// The present activity of one thread of the soak. A thread that begins nothing new for too long hangs.
class Activity {
public:
    explicit Activity(std::string threadName) : name(std::move(threadName)) {}

    void Begin(std::string what) {
        const std::lock_guard guard(lock);
        current = std::move(what);
        ++begun;
    }
    // Until the next Begin the thread is at nothing, and may take its time.
    void End() { Begin({}); }

    // Calls `look(begun, current)` with how much was begun so far and what was last.
    template <class Look>
    void Inspect(Look&& look) const {
        const std::lock_guard guard(lock);
        look(begun, current);
    }

    const std::string name;

private:
    mutable std::mutex lock;
    std::string current;
    uint64_t begun = 0;
};

// The threads of the soak, and the thread that watches them. When one of them is at the same thing for longer than the
// limit, `onHang` is called with a text that says which, and what all others are at; it is not meant to return.
class Watchdog {
public:
    using OnHang = std::function<void(const std::string& report)>;

    Watchdog(std::chrono::milliseconds hangLimit, OnHang whatToDo);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

    // Lives as long as the watch-dog.
    Activity& Add(const std::string& name);

private:
    struct Watched {
        explicit Watched(const std::string& name) : activity(name) {}

        Activity activity;
        uint64_t begunBefore = 0;
        std::chrono::steady_clock::time_point since = std::chrono::steady_clock::now();
    };

    void Watch();
    // Empty when all is well.
    std::string Hanging();

    const std::chrono::milliseconds limit;
    const OnHang onHang;
    std::mutex lock;
    std::list<Watched> watched;
    Event isOver;
    std::thread thread;
};
