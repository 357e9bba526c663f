#include "SampleModule.h"

#include <fmt/format.h>

#include <memory>
#include <string>

#include "SampleCollector.h"
#include "SampleEnforcer.h"
#include "SampleServices.h"
#include "SampleTasks.h"
#include "SampleUpdates.h"
#include "Text.h"
#include "VsMsgbus.h"

namespace {

// What the bridge logs for this module.
class Sink final : public VsKitMsgbus::ILogSink {
public:
    explicit Sink(const Speaker& moduleSpeaker) : speaker(moduleSpeaker) {}
    void Write(int level, const wchar_t* text) override {
        speaker.Say("bridge", fmt::format("log line, level {}: {}", level, Utf8FromWide(text)));
    }

private:
    const Speaker& speaker;
};

// The module while it is loaded.
class SampleModule {
public:
    explicit SampleModule(const Speaker& moduleSpeaker)
        : speaker(moduleSpeaker),
          sink(speaker),
          collector(speaker),
          enforcer(speaker),
          tasks(speaker),
          updates(speaker) {}

    bool Load() {
        // Registering first is as good as entering first: the bridge joins the two by the product id.
        if (!VsKitMsgbusSetCollectProperties(wideProductId.c_str(), &collector, &sink) ||
            !VsKitMsgbusSetEnforcePolicy(wideProductId.c_str(), &enforcer, &sink) ||
            !VsKitMsgbusSetTaskEnforcer(wideProductId.c_str(), &tasks, nullptr) ||
            !VsKitMsgbusSetUpdateNotify(wideProductId.c_str(), &updates, nullptr)) {
            return false;
        }
        speaker.Say("module", fmt::format("enters the bridge as {}, for properties, policies, tasks and updates",
                                          sampleProductId));
        return VsMsgbusEntry(
            sampleProductId,
            VsMsgbusServiceProperty | VsMsgbusServicePolicy | VsMsgbusServiceTask | VsMsgbusServiceUpdate, &sink,
            &bridge);
    }

    bool UseAgent() const { return UseAgentServices(speaker); }

    bool EnforceAgain() { return enforcer.EnforceAgain(wideProductId); }

    bool Unload() {
        speaker.Say("module", "leaves the bridge");
        tasks.StopAll();
        const bool hasLeft = VsMsgbusExit(sampleProductId, bridge);
        const bool isTakenBack = VsKitMsgbusRemoveCollectProperties(wideProductId.c_str()) &&
                                 VsKitMsgbusRemoveEnforcerPolicy(wideProductId.c_str()) &&
                                 VsKitMsgbusRemoveTaskEnforcer(wideProductId.c_str()) &&
                                 VsKitMsgbusRemoveUpdateNotify(wideProductId.c_str());
        return isTakenBack && hasLeft;
    }

private:
    const std::wstring wideProductId = WideFromUtf8(sampleProductId);
    const Speaker speaker;
    Sink sink;
    SampleCollector collector;
    SampleEnforcer enforcer;
    SampleTasks tasks;
    SampleUpdates updates;
    VsMsgbus* bridge = nullptr;
};

std::unique_ptr<SampleModule> loaded;

}  // namespace

bool SampleModuleLoad(SampleModuleSay say, void* userData) noexcept {
    try {
        if (say == nullptr || loaded != nullptr) {
            return false;
        }
        loaded = std::make_unique<SampleModule>(Speaker{say, userData});
        return loaded->Load();
    } catch (...) {
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
        if (loaded == nullptr) {
            return false;
        }
        const bool isUnloaded = loaded->Unload();
        loaded.reset();
        return isUnloaded;
    } catch (...) {
        return false;
    }
}
