// Entry to started, the last Exit, an upgrade and the first request after it, each with the agent's libraries really
// opened and closed.
#include <windows.h>

#include <optional>

#include "bench/floor/AgentPointers.h"
#include "bench/floor/FloorHost.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/module/Measurements.h"
#include "bench/module/Upgrades.h"

namespace bench {

namespace {

constexpr const char* openedLibraries[] = {"ny_client.dll", "ny_msgbus.dll"};

void RequireClosed() {
    for (const char* library : openedLibraries) {
        if (::GetModuleHandleA(library) != nullptr) {
            throw std::runtime_error(std::string("still open: ") + library);
        }
    }
}

// One life after the other; the seconds of their beginnings or of their ends.
double LivesOfOurs(size_t count, bool isOfEnds) {
    double beginnings = 0;
    double ends = 0;
    for (size_t i = 0; i < count; ++i) {
        VsMsgbus* instance = nullptr;
        beginnings += SecondsOf([&] {
            if (!VsMsgbusEntry(bareProductId, VsMsgbusServiceProperty, nullptr, &instance)) {
                throw std::runtime_error("the bridge cannot be entered");
            }
        });
        if (TheBareAgent()->properties.callback == nullptr) {
            throw std::runtime_error("the product was not registered");
        }
        ends += SecondsOf([&] { VsMsgbusExit(bareProductId, instance); });
        RequireClosed();
    }
    return isOfEnds ? ends : beginnings;
}

double LivesByHand(size_t count, bool isOfEnds) {
    double beginnings = 0;
    double ends = 0;
    for (size_t i = 0; i < count; ++i) {
        std::optional<FloorHost> host;
        beginnings += SecondsOf([&] {
            host.emplace();
            host->Enter(bareProductId);
        });
        if (TheBareAgent()->properties.callback == nullptr) {
            throw std::runtime_error("the product was not registered");
        }
        ends += SecondsOf([&] {
            host->Leave(bareProductId);
            host.reset();
        });
        RequireClosed();
    }
    return isOfEnds ? ends : beginnings;
}

void SetOne(ISet& set) {
    if (!set.SetProperty(L"General", L"ProductVersion", L"10.7.0.5786")) {
        throw std::runtime_error("a property was refused");
    }
}

// The seconds of so many upgrades, for a host that has entered one product.
double UpgradesOf(Stage& stage, size_t count) {
    Upgrades upgrades(stage, 1);
    double seconds = 0;
    for (size_t i = 0; i < count; ++i) {
        seconds += upgrades.Next();
    }
    return seconds;
}

// The first request after each of so many upgrades, which opens the library of the agent's texts anew.
double FirstRequests(Stage& stage, size_t count) {
    Upgrades upgrades(stage, 1);
    double seconds = 0;
    for (size_t i = 0; i < count; ++i) {
        upgrades.Next();
        if (::GetModuleHandleA("ny_variant.dll") != nullptr) {
            throw std::runtime_error("the request after an upgrade is not the first one");
        }
        seconds += SecondsOf([] {
            const auto& registered = TheBareAgent()->properties;
            Require(registered.callback(nullptr, bareProductId, barePropertyBag, registered.userData));
        });
    }
    return seconds;
}

// Runs `life(stage, count)` with the bridge, or with the floor, entered for a module with one property.
template <class Life>
std::function<double(size_t count)> OfOurs(Stage& stage, Life life) {
    return [=, &stage](size_t count) {
        const Entered entered(VsMsgbusServiceProperty);
        const Collecting module(SetOne);
        return life(stage, count);
    };
}

template <class Life>
std::function<double(size_t count)> ByHand(Stage& stage, Life life) {
    return [=, &stage](size_t count) {
        FloorHost host;
        Collecting module(SetOne);
        host.SetModule(bareWideProductId, module);
        host.Enter(bareProductId);
        return life(stage, count);
    };
}

}  // namespace

void MeasureLifeCycle(Session& session) {
    Stage stage;
    for (const bool isOfEnds : {false, true}) {
        session.Race({"life cycle",
                      isOfEnds ? "last Exit to last library released" : "Entry to started",
                      0,
                      1,
                      {{"ours", [=](size_t count) { return LivesOfOurs(count, isOfEnds); }},
                       {"by hand", [=](size_t count) { return LivesByHand(count, isOfEnds); }}},
                      1.3});
    }
    session.Race({"life cycle",
                  "an upgrade, until registered anew",
                  0,
                  1,
                  {{"ours", OfOurs(stage, UpgradesOf)}, {"by hand", ByHand(stage, UpgradesOf)}},
                  std::nullopt});
    session.Race({"life cycle",
                  "the first request after an upgrade",
                  0,
                  1,
                  {{"ours", OfOurs(stage, FirstRequests)}, {"by hand", ByHand(stage, FirstRequests)}},
                  1.3});
}

}  // namespace bench
