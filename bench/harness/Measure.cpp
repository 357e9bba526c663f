#include "bench/harness/Measure.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <numeric>
#include <thread>
#include <utility>

namespace bench {

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// How often the way must be run for a turn of this length.
size_t CountFor(const Contender& way, double seconds) {
    // The first time may load a library.
    way.run(1);
    size_t count = 1;
    for (;;) {
        const double taken = way.run(count);
        if (taken >= seconds || count > (size_t{1} << 40)) {
            return count;
        }
        // Not all at once: the first runs are slower than the later ones.
        const double factor = taken > 0 ? std::min(10.0, 1.2 * seconds / taken) : 10.0;
        count = std::max(count + 1, static_cast<size_t>(static_cast<double>(count) * factor));
    }
}

}  // namespace

Figure FigureOf(std::vector<double> numbers) {
    std::sort(numbers.begin(), numbers.end());
    const size_t middle = numbers.size() / 2;
    const double median = numbers.size() % 2 == 1 ? numbers[middle] : (numbers[middle - 1] + numbers[middle]) / 2;
    return {median, numbers.front(), numbers.back()};
}

Result Measure(const Case& measured, const Effort& effort) {
    const size_t ways = measured.ways.size();
    std::vector<size_t> counts;
    for (const Contender& way : measured.ways) {
        counts.push_back(CountFor(way, effort.secondsPerTurn));
    }
    std::vector<std::vector<double>> times(ways);
    for (size_t round = 0; round < effort.rounds; ++round) {
        for (size_t turn = 0; turn < ways; ++turn) {
            // Another one begins in each round.
            const size_t way = (round + turn) % ways;
            const double seconds = measured.ways[way].run(counts[way]);
            times[way].push_back(seconds * 1e9 / static_cast<double>(counts[way]) / measured.unitsPerRun);
        }
    }
    Result result{measured, {}, {}};
    for (size_t way = 0; way < ways; ++way) {
        std::vector<double> ratios;
        for (size_t round = 0; round < effort.rounds; ++round) {
            ratios.push_back(times[0][round] / times[way][round]);
        }
        result.nanoseconds.push_back(FigureOf(times[way]));
        result.ratios.push_back(FigureOf(std::move(ratios)));
    }
    return result;
}

double SecondsOf(const std::function<void()>& body) {
    const auto begin = Clock::now();
    body();
    return SecondsSince(begin);
}

double SecondsOnThreads(size_t threads, size_t count, const std::function<void(size_t thread, size_t count)>& body) {
    if (threads == 1) {
        return SecondsOf([&] { body(0, count); });
    }
    std::atomic<size_t> ready = 0;
    std::atomic<bool> go = false;
    std::vector<double> seconds(threads);
    std::vector<std::thread> running;
    for (size_t thread = 0; thread < threads; ++thread) {
        running.emplace_back([&, thread] {
            ++ready;
            while (!go) {
                std::this_thread::yield();
            }
            seconds[thread] = SecondsOf([&] { body(thread, count); });
        });
    }
    while (ready != threads) {
        std::this_thread::yield();
    }
    go = true;
    for (std::thread& one : running) {
        one.join();
    }
    return std::accumulate(seconds.begin(), seconds.end(), 0.0) / static_cast<double>(threads);
}

}  // namespace bench
