// Requests for different products on two threads, against the same on one.
#include <atomic>
#include <iterator>
#include <stdexcept>
#include <thread>
#include <vector>

#include "bench/floor/FloorAgent.h"
#include "bench/floor/FloorHost.h"
#include "bench/harness/Interlocked.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/module/Measurements.h"

namespace bench {

namespace {

// The bare agent's texts differ in their length alone.
struct Asked {
    const char* id;
    const wchar_t* wideId;
};
constexpr Asked asked[] = {{bareProductId, bareWideProductId}, {"xxxxxxxxxxxx", L"xxxxxxxxxxxx"}};

class OneProperty final : public VsKitMsgbus::INYCollectProperties {
public:
    void CollectProperties(bool /*full*/, ISet* set) override {
        set->SetProperty(L"General", L"ProductVersion", L"10.7.0.5786");
    }
    int32_t GetLogLevel() override { return 0; }
};

class OurHost {
public:
    OurHost() {
        for (const Asked& product : asked) {
            VsMsgbusEntry(product.id, VsMsgbusServiceProperty, nullptr, &instance);
        }
    }
    ~OurHost() {
        for (const Asked& product : asked) {
            VsKitMsgbusRemoveCollectProperties(product.wideId);
            VsMsgbusExit(product.id, instance);
        }
    }
    OurHost(const OurHost&) = delete;
    OurHost& operator=(const OurHost&) = delete;

    static void SetModule(const wchar_t* productId, VsKitMsgbus::INYCollectProperties& module) {
        VsKitMsgbusSetCollectProperties(productId, &module, nullptr);
    }

private:
    VsMsgbus* instance = nullptr;
};

class HostByHand : public FloorHost {
public:
    HostByHand() {
        for (const Asked& product : asked) {
            Enter(product.id);
        }
    }
};

// Two products, each with a module of its own, for which the agent asks.
template <class Host>
class Asking {
public:
    Asking() {
        for (size_t i = 0; i < std::size(asked); ++i) {
            host.SetModule(asked[i].wideId, modules[i]);
        }
        registered = TheBareAgent()->properties;
        // The library of the texts is opened here.
        Ask(0);
    }

    void Ask(size_t product) {
        if (registered.callback(nullptr, asked[product].id, barePropertyBag, registered.userData) != NY_OK) {
            throw std::runtime_error("the request was refused");
        }
    }
    // The same without a look-up, and so without a lock: what the machine can do.
    void AskWithoutLookUp(size_t product) { FloorCollect(modules[product], barePropertyBag); }

private:
    OneProperty modules[std::size(asked)];
    Host host;
    BareRegistration<ny_property_provider_t> registered;
};

// How many times as many requests two threads make as one; `ask(asking, product)` makes one.
template <class Host, class Ask>
double TimesAsMany(Session& session, Ask ask) {
    Asking<Host> asking;
    const auto way = [&](const char* name, size_t threads) {
        return Contender{name, [&asking, ask, threads](size_t count) {
                             // All threads together make so many in the time that is measured.
                             return SecondsOnThreads(threads, count,
                                                     [&](size_t thread, size_t requests) {
                                                         for (size_t i = 0; i < requests; ++i) {
                                                             ask(asking, thread);
                                                         }
                                                     }) /
                                    static_cast<double>(threads);
                         }};
    };
    const Result result = Measure({"", "", 0, 1, {way("2 threads", 2), way("1 thread", 1)}, {}}, session.effort);
    return 1 / result.ratios[1].median;
}

// Checks the counting with atomic numbers in two cache lines.
void RequireThatInterlockedAreCounted() {
    struct alignas(64) Line {
        std::atomic<int> first = 0;
        std::atomic<int> second = 0;
    };
    Line lines[2];
    const auto some = InterlockedLines([&] {
        ++lines[0].first;
        lines[1].first.exchange(1);
    });
    const auto others = InterlockedLines([&] { lines[0].second += 1000; });
    if (!InterlockedLines([] {}).empty() || some.size() != 2 || CountShared(some, others) != 1 ||
        CountShared(others, some) != 1) {
        throw std::runtime_error("interlocked instructions are not counted");
    }
}

// The interlocked instructions of one request: all, and those in cache lines that a request for another product takes
// as well.
struct Interlocked {
    double all;
    double shared;
};

template <class Host>
Interlocked InterlockedOf() {
    Asking<Host> asking;
    const auto lines = InterlockedLines([&] { asking.Ask(0); });
    std::vector<uintptr_t> others;
    // A thread of its own has a stack of its own, so that no line of a stack counts as shared.
    std::thread([&] { others = InterlockedLines([&] { asking.Ask(1); }); }).join();
    return {static_cast<double>(lines.size()), static_cast<double>(CountShared(lines, others))};
}

}  // namespace

void MeasureRequests(Session& session) {
    const Stage stage;
    const auto ask = [](auto& asking, size_t product) { asking.Ask(product); };
    const auto askWithoutLookUp = [](auto& asking, size_t product) { asking.AskWithoutLookUp(product); };
    const double ours = TimesAsMany<OurHost>(session, ask);
    session.report.Add(Amount{"requests",
                              "on 2 threads, for different products, against 1 thread",
                              0,
                              "times as many",
                              ours,
                              {{"by hand", TimesAsMany<HostByHand>(session, ask)},
                               {"without a look-up", TimesAsMany<HostByHand>(session, askWithoutLookUp)}},
                              "at least 1.8",
                              ours >= 1.8});
    RequireThatInterlockedAreCounted();
    const Interlocked inOurs = InterlockedOf<OurHost>();
    const Interlocked byHand = InterlockedOf<HostByHand>();
    const auto add = [&](const char* what, double amount, double byHandAmount) {
        session.report.Add(Amount{"requests", what, 0, "instructions", amount, {{"by hand", byHandAmount}}, "", true});
    };
    add("interlocked in one", inOurs.all, byHand.all);
    add("interlocked in one, in lines that another product's takes too", inOurs.shared, byHand.shared);
}

}  // namespace bench
