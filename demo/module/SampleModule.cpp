#include "SampleModule.h"

#include <windows.h>

#include <memory>

#include "MachineFacts.h"
#include "SamplePolicies.h"
#include "SampleServices.h"
#include "SampleTasks.h"
#include "SampleUpdates.h"
#include "Speaker.h"
#include "vsmsgbus.hpp"

namespace {

// The module while it is loaded.
class SampleModule {
public:
    explicit SampleModule(Speaker moduleSpeaker) : speaker(moduleSpeaker), policies(speaker), updates(speaker) {
        speaker.Say("enters the bridge as {}, for properties, policies, tasks and updates", sampleProductId);
        product.emplace(
            sampleProductId,
            vsmsgbus::Handlers{.properties = [this](vsmsgbus::Properties& properties) { TellFacts(properties); },
                               .policies = [this](vsmsgbus::Policies& changed) { policies.Enforce(changed); },
                               .tasks = [this](vsmsgbus::Task& task) { return RunScan(task, speaker); },
                               .updates = updates.Handlers(),
                               .log = [this](int level, std::wstring_view line) { speaker.SayLogLine(level, line); }});
    }

    bool IsRefused() const { return product->IsRefused(); }
    bool UseAgent() const { return UseAgentServices(speaker); }
    bool EnforceAgain() { return policies.EnforceAgain(*product); }

    bool Leave() {
        speaker.Say("leaves the bridge");
        return product->Leave();
    }

private:
    void TellFacts(vsmsgbus::Properties& properties) const {
        int taken = 0;
        const auto facts = ReadMachineFacts();
        for (const MachineFact& fact : facts) {
            taken += properties.Set(fact.path, fact.name, fact.value) ? 1 : 0;
        }
        speaker.Say("is asked on thread {}, answers with {} properties; the agent takes {}", ::GetCurrentThreadId(),
                    facts.size(), taken);
    }

    const Speaker speaker;
    SamplePolicies policies;
    SampleUpdates updates;
    std::optional<vsmsgbus::Product> product;
};

std::unique_ptr<SampleModule> loaded;

}  // namespace

bool SampleModuleLoad(SampleModuleSay say, void* userData) noexcept {
    if (say == nullptr || loaded != nullptr) {
        return false;
    }
    try {
        loaded = std::make_unique<SampleModule>(Speaker(say, userData));
        return !loaded->IsRefused();
    } catch (const std::exception& failure) {
        say("module", failure.what(), userData);
        return false;
    }
}

bool SampleModuleUseAgent() noexcept {
    try {
        return loaded != nullptr && loaded->UseAgent();
    } catch (...) {
        return false;
    }
}

bool SampleModuleEnforceAgain() noexcept {
    try {
        return loaded != nullptr && loaded->EnforceAgain();
    } catch (...) {
        return false;
    }
}

bool SampleModuleUnload() noexcept {
    try {
        // A handler that still runs uses the module.
        if (loaded == nullptr || !loaded->Leave()) {
            return false;
        }
        loaded.reset();
        return true;
    } catch (...) {
        return false;
    }
}
