#include "soak/Crowd.h"

#include <string>

#include "soak/Agent.h"

namespace {

std::atomic<uint64_t> callbacksOfTheAgent = 0;

// How long a thread waits before it tries again, when it found no product to call.
constexpr std::chrono::milliseconds retryPause{1};

}  // namespace

Crowd::Crowd(uint64_t seed, Watchdog& watchdog) {
    for (size_t i = 0; i < callerCount; ++i) {
        ExportCaller& caller = *callers.emplace_back(std::make_unique<ExportCaller>(seed + i, CallerId(i)));
        Activity& activity = watchdog.Add("caller " + std::to_string(i));
        threads.emplace_back([&caller, &activity, this] { CallExports(caller, activity); });
    }
    for (const Service service : allServices) {
        Activity& activity = watchdog.Add(std::string("agent's caller of the ") + NameOf(service));
        const Random random(seed + callerCount + static_cast<size_t>(service));
        threads.emplace_back([&activity, service, random, this] { CallBack(service, random, activity); });
    }
}

Crowd::~Crowd() {
    isOver.Set();
    for (std::thread& thread : threads) {
        thread.join();
    }
    callers.clear();
    ForgetShared();
}

void Crowd::CallExports(ExportCaller& caller, Activity& activity) {
    while (!isOver.IsSet()) {
        const ExportCaller::Action& action = caller.Next();
        activity.Begin(action.name);
        action.run(caller);
        activity.End();
    }
}

void Crowd::CallBack(Service service, Random random, Activity& activity) {
    const std::vector<std::string> ids = AllProductIds();
    while (!isOver.IsSet()) {
        // The next product that can be called, from one that chance says.
        const size_t first = random.Below(static_cast<uint32_t>(ids.size()));
        const uint32_t variant = random.Below(4);
        bool isCalled = false;
        for (size_t i = 0; i < ids.size() && !isCalled; ++i) {
            const std::string& id = ids[(first + i) % ids.size()];
            activity.Begin("calling " + id);
            isCalled = AgentCalls(id, service, variant);
        }
        activity.End();
        if (isCalled) {
            ++callbacksOfTheAgent;
        } else {
            isOver.Wait(retryPause);
        }
    }
}

uint64_t CallbacksOfTheAgent() {
    return callbacksOfTheAgent;
}
