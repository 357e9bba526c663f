// From a write of the agent's version in the registry until the point product is told, against a bare loop that waits
// for the same change, reads the same value and tells of it.
#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "bench/floor/AgentPointers.h"
#include "bench/harness/Stage.h"
#include "bench/inner/Measurements.h"
#include "msgbus/client/AgentKey.h"
#include "msgbus/client/NyClient.h"
#include "msgbus/client/VsMsgbusClientRecord.h"

using namespace bridge;

namespace bench {

namespace {

// When somebody was told last, and how often so far.
class Told {
public:
    void Tell() {
        const std::lock_guard guard(mutex);
        ++count;
        changed.notify_all();
    }

    // False when nobody is told in time.
    bool WaitFor(size_t wanted, std::chrono::milliseconds limit) {
        std::unique_lock guard(mutex);
        return changed.wait_for(guard, limit, [&] { return count >= wanted; });
    }

    size_t Count() {
        const std::lock_guard guard(mutex);
        return count;
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    size_t count = 0;
};

// The bridge's client with its watcher, without an agent behind it: told of state 1 after every write of a version.
class OurWatch {
public:
    explicit OurWatch(Told& toldOnes) : told(toldOnes) {
        Require(NyClientCreate("xxxxxxxx", &record));
        Require(NyClientRegisterNotifications(record.client, &Notify, this));
    }
    ~OurWatch() {
        NyClientUnregisterNotifications(record.client);
        NyClientRelease(record.client);
    }
    OurWatch(const OurWatch&) = delete;
    OurWatch& operator=(const OurWatch&) = delete;

private:
    static void Notify(NyClient* /*client*/, uint32_t state, void* userData) {
        if (state == NyClientStateStarted) {
            static_cast<OurWatch*>(userData)->told.Tell();
        }
    }

    Told& told;
    VsMsgbusClientRecord record{};
};

class BareWatch {
public:
    explicit BareWatch(Told& toldOnes)
        : told(toldOnes),
          change(::CreateEventW(nullptr, FALSE, FALSE, nullptr)),
          stop(::CreateEventW(nullptr, TRUE, FALSE, nullptr)),
          thread([this] { Watch(); }) {}
    ~BareWatch() {
        ::SetEvent(stop);
        thread.join();
        ::CloseHandle(change);
        ::CloseHandle(stop);
    }
    BareWatch(const BareWatch&) = delete;
    BareWatch& operator=(const BareWatch&) = delete;

private:
    void Watch() {
        AgentKey key;
        AgentVersion version{};
        key.Open();
        const HANDLE handles[] = {change, stop};
        do {
            ::ResetEvent(change);
            key.Watch(change);
            AgentVersion seen{};
            if (key.ReadVersion(seen) == ERROR_SUCCESS && std::string_view(seen) != version) {
                std::copy(std::begin(seen), std::end(seen), std::begin(version));
                told.Tell();
            }
        } while (::WaitForMultipleObjects(2, handles, FALSE, INFINITE) == WAIT_OBJECT_0);
    }

    Told& told;
    const HANDLE change;
    const HANDLE stop;
    std::thread thread;
};

size_t versionsWritten = 0;

void WriteNewVersion() {
    simulator::AgentInstaller::WriteVersion("5." + std::to_string(++versionsWritten));
}

// The nanoseconds from each of `count` writes until somebody was told.
template <class Watch>
std::vector<double> Delays(size_t count) {
    using namespace std::chrono_literals;
    Told told;
    const Watch watch(told);
    // Until the thread watches, a write may go unseen.
    do {
        WriteNewVersion();
    } while (!told.WaitFor(2, 100ms));
    // Those that were not seen one by one.
    std::this_thread::sleep_for(20ms);
    std::vector<double> delays;
    for (size_t i = 0; i < count; ++i) {
        const size_t before = told.Count();
        delays.push_back(1e9 * SecondsOf([&] {
                             WriteNewVersion();
                             if (!told.WaitFor(before + 1, 5000ms)) {
                                 throw std::runtime_error("nobody was told of a new version");
                             }
                         }));
        // The watcher asks for the next notification before it reads, so that there is nothing to wait for here but the
        // end of what it is doing.
        std::this_thread::sleep_for(2ms);
    }
    return delays;
}

double Percentile(std::vector<double> numbers, size_t percent) {
    std::sort(numbers.begin(), numbers.end());
    return numbers[std::min(numbers.size() - 1, numbers.size() * percent / 100)];
}

void Append(std::vector<double>& all, const std::vector<double>& more) {
    all.insert(all.end(), more.begin(), more.end());
}

}  // namespace

void MeasureNotifications(Session& session) {
    const Stage stage;
    std::vector<double> ours;
    std::vector<double> bare;
    const size_t rounds = session.isQuick ? 2 : 8;
    for (size_t round = 0; round < rounds; ++round) {
        Append(ours, Delays<OurWatch>(50));
        Append(bare, Delays<BareWatch>(50));
    }
    for (const size_t percent : {50U, 99U}) {
        session.report.Add(Amount{"notification",
                                  "registry write to told, p" + std::to_string(percent),
                                  0,
                                  "nanoseconds",
                                  Percentile(ours, percent),
                                  {{"bare loop", Percentile(bare, percent)}},
                                  "",
                                  true});
    }
}

}  // namespace bench
