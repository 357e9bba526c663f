#include "bench/module/Upgrades.h"

#include <stdexcept>
#include <string>
#include <thread>

#include "bench/bare/BareAgent.h"
#include "bench/harness/Measure.h"

using simulator::AgentInstaller;
using namespace std::chrono_literals;

namespace bench {

RegistrationsSeen::RegistrationsSeen() : reached(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
    TheBareAgent()->whenRegisteredData = this;
    TheBareAgent()->whenRegistered = [](void* userData) { static_cast<RegistrationsSeen*>(userData)->Add(); };
}

RegistrationsSeen::~RegistrationsSeen() {
    TheBareAgent()->whenRegistered = nullptr;
    ::CloseHandle(reached);
}

void RegistrationsSeen::Expect(size_t registrations) {
    ::ResetEvent(reached);
    wanted = registrations;
    count = 0;
}

bool RegistrationsSeen::Wait(std::chrono::milliseconds limit) const {
    return ::WaitForSingleObject(reached, static_cast<DWORD>(limit.count())) == WAIT_OBJECT_0;
}

void RegistrationsSeen::Add() {
    if (++count == wanted) {
        ::SetEvent(reached);
    }
}

Upgrades::Upgrades(Stage& stageOfAgent, size_t productsOfHost) : stage(stageOfAgent), products(productsOfHost) {
    // Its thread begins to watch meanwhile, as a rule.
    std::this_thread::sleep_for(5ms);
    while (Make(1s) == 0) {
    }
    // Those that followed later than they were waited for.
    do {
        seen.Expect(1);
    } while (seen.Wait(20ms));
}

double Upgrades::Next() {
    const double seconds = Make(30s);
    if (seconds == 0) {
        throw std::runtime_error("an upgrade was not followed");
    }
    return seconds;
}

double Upgrades::Make(std::chrono::milliseconds limit) {
    const std::filesystem::path folder = stage.OtherFolder();
    const std::string version = stage.NextVersion();
    AgentInstaller::WriteRuntimePath(folder);
    seen.Expect(products);
    bool hasFollowed = false;
    const double seconds = SecondsOf([&] {
        AgentInstaller::WriteVersion(version);
        hasFollowed = seen.Wait(limit);
    });
    const bool isOpened = ::GetModuleHandleA((folder / "ny_client.dll").string().c_str()) != nullptr;
    std::this_thread::sleep_for(2ms);
    return hasFollowed && isOpened ? seconds : 0;
}

}  // namespace bench
