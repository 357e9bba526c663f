#pragma once

#include <algorithm>
#include <atomic>

// Counts how many threads are inside a module at a time.
class Visits {
public:
    void Begin() {
        const int now = ++inside;
        for (int seen = most; seen < now && !most.compare_exchange_weak(seen, now);) {
        }
    }
    void End() { --inside; }
    int Most() const { return most; }

private:
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
};
