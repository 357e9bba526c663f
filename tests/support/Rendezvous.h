#pragma once

#include <condition_variable>
#include <mutex>

// A meeting point for a fixed number of threads, again and again: no thread goes on before all have come.
class Rendezvous {
public:
    explicit Rendezvous(int threadCount) : count(threadCount), missing(threadCount) {}

    void Meet() {
        std::unique_lock guard(mutex);
        if (--missing == 0) {
            missing = count;
            ++round;
            allHere.notify_all();
            return;
        }
        allHere.wait(guard, [this, current = round] { return round != current; });
    }

private:
    std::mutex mutex;
    std::condition_variable allHere;
    const int count;
    int missing;
    unsigned round = 0;
};
