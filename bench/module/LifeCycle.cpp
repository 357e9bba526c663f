// Entry to started, the last Exit, and an upgrade, each with the agent's libraries really opened and closed.
#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "bench/floor/AgentPointers.h"
#include "bench/harness/Module.h"
#include "bench/harness/Stage.h"
#include "bench/module/Measurements.h"

using simulator::AgentInstaller;

namespace bench {

namespace {

constexpr const char* openedLibraries[] = {"ny_client.dll", "ny_msgbus.dll"};

int32_t TakeLine(uint32_t /*severity*/, const char* /*module*/, const char* /*message*/, void* /*userData*/) {
    return NY_OK;
}

int32_t GivePassphrase(ny_msgbus_t* /*bus*/, unsigned char* /*passphrase*/, size_t* /*size*/, void* /*userData*/) {
    return NY_OK;
}

int32_t Provide(ny_client_t* /*client*/, const char* /*productId*/, ny_property_bag_t* /*bag*/, void* /*userData*/) {
    return NY_OK;
}

// The agent by hand: what Entry makes of it, and the last Exit ends.
class ByHand {
public:
    explicit ByHand(const std::filesystem::path& folder) {
        client = LoadedLibrary((folder / openedLibraries[0]).string());
        Resolve<&::ny_client_handler_create, &::ny_client_handler_start, &::ny_client_handler_stop,
                &::ny_client_handler_release, &::ny_client_handler_set_thread_option,
                &::ny_client_handler_set_logger_callback, &::ny_client_handler_set_msgbus_passphrase_callback,
                &::ny_client_handler_get_msgbus, &::ny_property_register_provider_callback,
                &::ny_property_unregister_provider_callback>(client);
        Require(pointerTo<&::ny_client_handler_create>(bareProductId, &handler));
        Require(pointerTo<&::ny_client_handler_set_msgbus_passphrase_callback>(handler, GivePassphrase, nullptr));
        Require(pointerTo<&::ny_client_handler_set_thread_option>(handler, 0));
        Require(pointerTo<&::ny_client_handler_set_logger_callback>(handler, TakeLine, nullptr));
        Require(pointerTo<&::ny_client_handler_start>(handler));
        Require(pointerTo<&::ny_client_handler_get_msgbus>(handler, &msgbus));
        Require(pointerTo<&::ny_property_register_provider_callback>(handler, bareProductId, Provide, nullptr));
    }
    // With the bus library, which is needed for one call at the end.
    void Close(const std::filesystem::path& folder) {
        bus = LoadedLibrary((folder / openedLibraries[1]).string());
        Resolve<&::ny_msgbus_disable_watcher>(bus);
        Require(pointerTo<&::ny_msgbus_disable_watcher>(msgbus));
        Require(pointerTo<&::ny_property_unregister_provider_callback>(handler, bareProductId));
        Require(pointerTo<&::ny_client_handler_stop>(handler));
        Require(pointerTo<&::ny_client_handler_release>(handler));
        ::FreeLibrary(bus);
        ::FreeLibrary(client);
    }

private:
    HMODULE client = nullptr;
    HMODULE bus = nullptr;
    ny_client_t* handler = nullptr;
    ny_msgbus_t* msgbus = nullptr;
};

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

double LivesByHand(size_t count, bool isOfEnds, const std::filesystem::path& folder) {
    double beginnings = 0;
    double ends = 0;
    for (size_t i = 0; i < count; ++i) {
        std::optional<ByHand> agent;
        beginnings += SecondsOf([&] { agent.emplace(folder); });
        ends += SecondsOf([&] { agent->Close(folder); });
        RequireClosed();
    }
    return isOfEnds ? ends : beginnings;
}

// Waits for registrations with the bare agent.
class RegistrationsSeen {
public:
    RegistrationsSeen() {
        TheBareAgent()->whenRegistered = [](void* userData) { static_cast<RegistrationsSeen*>(userData)->Add(); };
        TheBareAgent()->whenRegisteredData = this;
    }
    ~RegistrationsSeen() { TheBareAgent()->whenRegistered = nullptr; }
    RegistrationsSeen(const RegistrationsSeen&) = delete;
    RegistrationsSeen& operator=(const RegistrationsSeen&) = delete;

    bool WaitForNext(std::chrono::milliseconds limit) {
        std::unique_lock guard(mutex);
        const bool hasCome = changed.wait_for(guard, limit, [&] { return count > counted; });
        counted = count;
        return hasCome;
    }

private:
    void Add() {
        const std::lock_guard guard(mutex);
        ++count;
        changed.notify_all();
    }

    std::mutex mutex;
    std::condition_variable changed;
    size_t count = 0;
    size_t counted = 0;
};

// From the new version in the registry until the product is registered with the new libraries, from one folder to
// another and back.
std::vector<double> Upgrades(size_t count, const std::filesystem::path (&folders)[2]) {
    using namespace std::chrono_literals;
    RegistrationsSeen seen;
    const Entered entered(VsMsgbusServiceProperty);
    std::vector<double> milliseconds;
    unsigned version = 0;
    const auto upgrade = [&](std::chrono::milliseconds limit) {
        ++version;
        AgentInstaller::WriteRuntimePath(folders[version % 2]);
        bool hasCome = false;
        const double seconds = SecondsOf([&] {
            AgentInstaller::WriteVersion("6." + std::to_string(version));
            hasCome = seen.WaitForNext(limit);
        });
        if (hasCome && ::GetModuleHandleA((folders[version % 2] / "ny_client.dll").string().c_str()) == nullptr) {
            throw std::runtime_error("the agent was not opened in its new folder");
        }
        std::this_thread::sleep_for(2ms);
        return hasCome ? 1e3 * seconds : 0;
    };
    // Until the watcher's thread watches, a write may go unseen.
    seen.WaitForNext(0ms);
    while (upgrade(100ms) == 0) {
    }
    seen.WaitForNext(50ms);
    for (size_t i = 0; i < count; ++i) {
        milliseconds.push_back(upgrade(5000ms));
    }
    return milliseconds;
}

}  // namespace

void MeasureLifeCycle(Session& session) {
    Stage stage;
    const std::filesystem::path first = stage.Folder();
    for (const bool isOfEnds : {false, true}) {
        session.Race({"life cycle",
                      isOfEnds ? "last Exit to last library released" : "Entry to started",
                      0,
                      1,
                      {{"ours", [=](size_t count) { return LivesOfOurs(count, isOfEnds); }},
                       {"by hand", [=](size_t count) { return LivesByHand(count, isOfEnds, first); }}},
                      std::nullopt});
    }
    stage.Installer().Upgrade("6.0", "bare");
    const std::filesystem::path folders[2] = {first, stage.Folder()};
    const Figure figure = FigureOf(Upgrades(session.isQuick ? 20 : 200, folders));
    session.report.Add(Amount{"life cycle",
                              "an upgrade, until registered anew",
                              0,
                              "milliseconds",
                              figure.median,
                              {{"least", figure.least}, {"greatest", figure.greatest}},
                              "",
                              true});
}

}  // namespace bench
