// A module that offers everything, and whose callbacks lead into a trap.
#pragma once

#include "VsMsgbus.h"
#include "loglib/LogLib.h"
#include "reentrancy/Trap.h"

class TrappedSink final : public VsKitMsgbus::ILogSink {
public:
    TrappedSink(Trap& owner, const char* beginOfNames) : trap(owner), nameBegin(beginOfNames) {}
    void Write(int level, const wchar_t* text) override;

private:
    Trap& trap;
    const char* const nameBegin;
};

class TrappedModule final : public VsKitMsgbus::INYCollectProperties,
                            public VsKitMsgbus::INYEnforcePolicy::IPolicyBag::ICallbacks,
                            public VsKitMsgbus::INYTaskEnforcer,
                            public VsKitMsgbus::INYTaskEnforcer::ITaskBag::ISettingVisitor,
                            public VsKitMsgbus::INYUpdateNotifyCallback,
                            public LogUtils::LogListener {
public:
    explicit TrappedModule(Trap& owner) : trap(owner) {}

    // Set and Remove of all four interfaces.
    void Register(const wchar_t* productId);
    static void Remove(const wchar_t* productId);

    void CollectProperties(bool full, VsKitMsgbus::INYCollectProperties::ISet* set) override;
    int32_t GetLogLevel() override;

    bool OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) override;
    bool OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) override;
    bool OnSection(const wchar_t*, const wchar_t*) override;
    bool OnSetting(const wchar_t*, const wchar_t*, const wchar_t*) override;

    int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t StopTask(const wchar_t* taskId, ITaskBag* bag) override;
    int32_t RemoveTask(const wchar_t* taskId, ITaskBag* bag) override;
    void FreeCookie(void* cookie) override;
    void BeginSettings() override;
    void VisitSetting(const wchar_t*, const wchar_t*, const wchar_t*) override;

    int32_t UpdateNotify(const wchar_t*, const wchar_t*, const wchar_t*, uint32_t*) override;
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar, VsKit::cp_wchar,
                                                          VsKitMsgbus::INYUpdateNotifyCallback::ISet* set) override;
    int32_t SetProductInfo(const wchar_t*, const wchar_t*, const wchar_t*) override;

    void OnLogEvent(const LogUtils::LogRecord& event) override;

    VsKitMsgbus::INYEnforcePolicy& Enforcer() { return enforcer; }

private:
    // An interface of its own: two have a GetLogLevel.
    class TrappedEnforcer final : public VsKitMsgbus::INYEnforcePolicy {
    public:
        explicit TrappedEnforcer(TrappedModule& module) : owner(module) {}
        int32_t GetLogLevel() override;
        void Reserved() override;
        void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override;

    private:
        TrappedModule& owner;
    };

    bool Tell(const char* callback);
    int32_t Do(const char* callback, ITaskBag& bag);

    Trap& trap;

public:
    // The process-wide sink.
    TrappedSink sink{trap, "Write_"};

private:
    TrappedSink moduleSink{trap, "WriteOfModule_"};
    TrappedEnforcer enforcer{*this};
};
