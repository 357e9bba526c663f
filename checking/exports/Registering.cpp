// The exports that register interfaces, and take them away.
#include "checking/exports/Registering.h"
#include "checking/CheckedCollector.h"
#include "checking/CheckedEnforcer.h"
#include "checking/CheckedTasks.h"
#include "checking/CheckedUpdates.h"
#include "checking/exports/Checked.h"

using namespace checking;

namespace {

std::shared_ptr<CheckedSink> MakeSink(const wchar_t* productId, void* sink) noexcept {
    std::shared_ptr<CheckedSink> checked;
    bridge::Guarded([&] {
        checked = CheckedSink::Make(productId != nullptr ? productId : L"", static_cast<VsKitMsgbus::ILogSink*>(sink));
    });
    return checked;
}

// Without memory for a checked one, the module's own.
void* SinkFor(const std::shared_ptr<CheckedSink>& checked, void* sink) noexcept {
    return checked != nullptr ? static_cast<VsKitMsgbus::ILogSink*>(checked.get()) : sink;
}

}  // namespace

bool CheckedVsKitMsgbusSetCollectProperties(const wchar_t* productId, VsKitMsgbus::INYCollectProperties* collector,
                                            void* sink) noexcept {
    const auto checked = MakeSink(productId, sink);
    return SetInterface<CheckedCollector>(services[Property], productId, collector, &VsKitMsgbusSetCollectProperties,
                                          SinkFor(checked, sink), checked);
}

bool CheckedVsKitMsgbusRemoveCollectProperties(const wchar_t* productId) noexcept {
    return RemoveInterface(services[Property], productId, &VsKitMsgbusRemoveCollectProperties);
}

bool CheckedVsKitMsgbusSetEnforcePolicy(const wchar_t* productId, VsKitMsgbus::INYEnforcePolicy* enforcer,
                                        void* sink) noexcept {
    const auto checked = MakeSink(productId, sink);
    return SetInterface<CheckedEnforcer>(services[Policy], productId, enforcer, &VsKitMsgbusSetEnforcePolicy,
                                         SinkFor(checked, sink), checked);
}

bool CheckedVsKitMsgbusRemoveEnforcerPolicy(const wchar_t* productId) noexcept {
    return RemoveInterface(services[Policy], productId, &VsKitMsgbusRemoveEnforcerPolicy);
}

bool CheckedVsKitMsgbusSetTaskEnforcer(const wchar_t* productId, VsKitMsgbus::INYTaskEnforcer* enforcer,
                                       void* context) noexcept {
    return SetInterface<CheckedTasks>(services[Task], productId, enforcer, &VsKitMsgbusSetTaskEnforcer, context);
}

bool CheckedVsKitMsgbusRemoveTaskEnforcer(const wchar_t* productId) noexcept {
    return RemoveInterface(services[Task], productId, &VsKitMsgbusRemoveTaskEnforcer);
}

bool CheckedVsKitMsgbusSetUpdateNotify(const wchar_t* productId, VsKitMsgbus::INYUpdateNotifyCallback* callback,
                                       void* context) noexcept {
    return SetInterface<CheckedUpdates>(services[Update], productId, callback, &VsKitMsgbusSetUpdateNotify, context);
}

bool CheckedVsKitMsgbusRemoveUpdateNotify(const wchar_t* productId) noexcept {
    return RemoveInterface(services[Update], productId, &VsKitMsgbusRemoveUpdateNotify);
}
