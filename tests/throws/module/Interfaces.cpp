// The module's interfaces: each operation throws when the test has told it to.
#include "Throwing.h"
#include "VsMsgbus.h"
#include "loglib/LogLib.h"

namespace {

using IPolicyBag = VsKitMsgbus::INYEnforcePolicy::IPolicyBag;
using ITaskBag = VsKitMsgbus::INYTaskEnforcer::ITaskBag;

class Collector final : public VsKitMsgbus::INYCollectProperties {
public:
    void CollectProperties(bool /*full*/, ISet* set) override {
        set->SetProperty(L"General", L"Version", L"1.0");
        ThrowIfAt(Place::CollectProperties);
    }
    int32_t GetLogLevel() override {
        ThrowIfAt(Place::LevelOfCollector);
        return 0;
    }
};

class Callbacks final : public IPolicyBag::ICallbacks {
public:
    explicit Callbacks(Place placeOfSettings) : place(placeOfSettings) {}
    // Walks once more in each setting.
    Callbacks(IPolicyBag* bagOfInner, const wchar_t* product)
        : place(Place::OnSetting), bag(bagOfInner), productId(product) {}

    bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override {
        ThrowIfAt(Place::OnContainer);
        return true;
    }
    bool OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) override {
        ThrowIfAt(Place::OnSettings);
        return true;
    }
    bool OnSection(const wchar_t*, const wchar_t*) override {
        ThrowIfAt(Place::OnSection);
        return true;
    }
    bool OnSetting(const wchar_t*, const wchar_t*, const wchar_t*) override {
        ThrowIfAt(place);
        if (bag == nullptr) {
            return true;
        }
        Callbacks inner(Place::OnSettingOfInnerWalk);
        return bag->EnumeratePolicies(productId, &inner);
    }

private:
    const Place place;
    IPolicyBag* const bag = nullptr;
    const wchar_t* const productId = nullptr;
};

struct WalkOfModule {
    void Run() {
        Callbacks plain(Place::OnSetting);
        Callbacks nested(bag, productId);
        Callbacks* const used = IsAt(Place::OnSettingOfInnerWalk) ? &nested : &plain;
        const bool isWhole = CurrentCatcher() == Catcher::ModuleAroundUserWalk
                                 ? bag->EnumerateUserPolicies(productId, used, L"user", L"DOMAIN")
                                 : bag->EnumeratePolicies(productId, used);
        Tell(isWhole ? "walked" : "walked not to the end");
        VsKitMsgbus::lpc_buffer digests;
        bag->GetDigestText(productIdOfDigests, &digests);
        Tell(digests.kind == VsKitMsgbus::lpc_buffer::NarrowText ? static_cast<const char*>(digests.data) : "none");
        digests.Release();
    }

    static constexpr const char* productIdOfDigests = "THROWING1000";

    IPolicyBag* bag;
    const wchar_t* productId;
};

class Enforcer final : public VsKitMsgbus::INYEnforcePolicy {
public:
    int32_t GetLogLevel() override {
        ThrowIfAt(Place::LevelOfEnforcer);
        return 0;
    }
    void Reserved() override {}
    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override {
        ThrowIfAt(Place::EnforcePolicy);
        WalkOfModule walk{bag, productId};
        const auto run = [](void* argument) { static_cast<WalkOfModule*>(argument)->Run(); };
        if (CurrentCatcher() == Catcher::Bridge) {
            run(&walk);
            return;
        }
        Tell("walks");
        Catch(run, &walk);
        ThrowAt(Place::Nowhere, Thrown::Number, CurrentCatcher());
        run(&walk);
    }
};

class Visitor final : public ITaskBag::ISettingVisitor {
public:
    void BeginSettings() override {}
    void VisitSetting(const wchar_t*, const wchar_t*, const wchar_t*) override { ThrowIfAt(Place::VisitSetting); }
};

class TaskEnforcer final : public VsKitMsgbus::INYTaskEnforcer {
public:
    int32_t ExecuteTask(const wchar_t*, ITaskBag* bag) override {
        ThrowIfAt(Place::ExecuteTask);
        Visitor visitor;
        Tell(bag->IterateSettings(&visitor, L"Scan") == 1 ? "all shown" : "not all shown");
        return Succeeded;
    }
    int32_t UpdateTaskStatus(const wchar_t*, ITaskBag*) override { return Answer(Place::UpdateTaskStatus); }
    int32_t StopTask(const wchar_t*, ITaskBag*) override { return Answer(Place::StopTask); }
    int32_t RemoveTask(const wchar_t*, ITaskBag*) override { return Answer(Place::RemoveTask); }
    void FreeCookie(void*) override {
        ThrowIfAt(Place::FreeCookie);
        Tell("freed");
    }

private:
    static int32_t Answer(Place place) {
        ThrowIfAt(place);
        return Succeeded;
    }
};

class Updates final : public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    int32_t UpdateNotify(const wchar_t*, const wchar_t*, const wchar_t*, uint32_t*) override {
        ThrowIfAt(Place::UpdateNotify);
        return 20;
    }
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar, VsKit::cp_wchar, ISet* set) override {
        set->Set(L"a value that is too long to be kept in an object of a few bytes");
        ThrowIfAt(Place::GetProductInfo);
        return static_cast<VsKitMsgbus::etag_PRODUCT_RETURN_VALUE>(30);
    }
    int32_t SetProductInfo(const wchar_t*, const wchar_t*, const wchar_t*) override {
        ThrowIfAt(Place::SetProductInfo);
        return 40;
    }
};

class Sink final : public VsKitMsgbus::ILogSink {
public:
    explicit constexpr Sink(Place placeOfSink) : place(placeOfSink) {}

    void Write(int /*level*/, const wchar_t* text) override {
        ThrowIfAt(place);
        // Its texts are of one byte each.
        char line[256] = {};
        for (size_t i = 0; i + 1 < sizeof line && text[i] != 0; ++i) {
            line[i] = static_cast<char>(text[i]);
        }
        Tell(line);
    }

private:
    const Place place;
};

class Listener final : public LogUtils::LogListener {
public:
    void OnLogEvent(const LogUtils::LogRecord&) override {
        ThrowIfAt(Place::OnLogEvent);
        Tell("listened");
    }
};

// The manager is handed on, and never called by the bridge.
LogUtils::LogManager* HostsManager() {
    ThrowIfAt(Place::HostsManager);
    return nullptr;
}

void LogWide(const LogUtils::LogEvent*, const wchar_t*, const wchar_t*) {
    ThrowIfAt(Place::HostsWideEvent);
    Tell("logged a text");
}

void LogFormatted(const LogUtils::LogEvent*, const wchar_t*, const char*, ...) {
    ThrowIfAt(Place::HostsFormattedEvent);
    Tell("logged a format");
}

void CheckHealth() {
    ThrowIfAt(Place::HealthCheck);
    Tell("checked");
}

Collector collector;
Enforcer enforcer;
TaskEnforcer taskEnforcer;
Updates updates;
Sink sinkOfBridge(Place::WriteOfBridge);
Sink sinkOfRegistrations(Place::WriteOfRegistration);
Listener listener;

bool SetEnforcer(const wchar_t* wideId, bool isSet) {
    return isSet ? VsKitMsgbusSetEnforcePolicy(wideId, &enforcer, &sinkOfRegistrations)
                 : VsKitMsgbusRemoveEnforcerPolicy(wideId);
}

VsMsgbus* bridge = nullptr;

bool Enter(const char* id, const wchar_t* wideId) {
    constexpr uint32_t allServices = ~0U;
    return VsKitMsgbusSetCollectProperties(wideId, &collector, &sinkOfRegistrations) && SetEnforcer(wideId, true) &&
           VsKitMsgbusSetTaskEnforcer(wideId, &taskEnforcer, nullptr) &&
           VsKitMsgbusSetUpdateNotify(wideId, &updates, nullptr) &&
           VsMsgbusEntry(id, allServices, &sinkOfBridge, &bridge);
}

bool Leave(const char* id, const wchar_t* wideId) {
    const bool hasLeft = VsMsgbusExit(id, bridge);
    return VsKitMsgbusRemoveCollectProperties(wideId) && SetEnforcer(wideId, false) &&
           VsKitMsgbusRemoveTaskEnforcer(wideId) && VsKitMsgbusRemoveUpdateNotify(wideId) && hasLeft;
}

void FreeCookie(const wchar_t* wideId) {
    VsKitMsgbusFreeTaskCookie(wideId, nullptr);
}

void Listen(bool isListening) {
    getLogManager()->SetListener(isListening ? &listener : nullptr);
}

constexpr ThrowingModule offered = {Enter,       Leave,        SetEnforcer, FreeCookie,  Listen,
                                    CheckHealth, HostsManager, LogWide,     LogFormatted};

}  // namespace

const ThrowingModule* GetThrowingModule() {
    return &offered;
}
