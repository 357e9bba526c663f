#include "reentrancy/Module.h"

#include <gtest/gtest.h>

void TrappedSink::Write(int /*level*/, const wchar_t* text) {
    trap.EnterWrite(nameBegin, text);
}

void TrappedModule::Register(const wchar_t* productId) {
    EXPECT_TRUE(VsKitMsgbusSetCollectProperties(productId, this, &moduleSink));
    EXPECT_TRUE(VsKitMsgbusSetEnforcePolicy(productId, &enforcer, &moduleSink));
    EXPECT_TRUE(VsKitMsgbusSetTaskEnforcer(productId, this, nullptr));
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(productId, this, nullptr));
}

void TrappedModule::Remove(const wchar_t* productId) {
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(productId));
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(productId));
    EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(productId));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(productId));
}

void TrappedModule::CollectProperties(bool /*full*/, VsKitMsgbus::INYCollectProperties::ISet* set) {
    trap.Enter("CollectProperties");
    set->SetProperty(L"general", L"version", L"1.0");
    if (trap.IsSetFor("Write_FailingProvider")) {
        throw 1;
    }
}

int32_t TrappedModule::GetLogLevel() {
    trap.Enter("GetLogLevelOfCollector");
    return 0;
}

int32_t TrappedModule::TrappedEnforcer::GetLogLevel() {
    owner.trap.Enter("GetLogLevelOfEnforcer");
    return 0;
}

void TrappedModule::TrappedEnforcer::Reserved() {
    ADD_FAILURE() << "this slot is never called";
}

void TrappedModule::TrappedEnforcer::EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) {
    owner.trap.Enter("EnforcePolicy");
    if (owner.trap.IsSetFor("Write_FailingEnforcer")) {
        throw 1;
    }
    bag->EnumeratePolicies(productId, &owner);
}

bool TrappedModule::OnContainer(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) {
    return Tell("OnContainer");
}
bool TrappedModule::OnSettings(const wchar_t*, const wchar_t*, const wchar_t*) {
    return Tell("OnSettings");
}
bool TrappedModule::OnSection(const wchar_t*, const wchar_t*) {
    return Tell("OnSection");
}
bool TrappedModule::OnSetting(const wchar_t*, const wchar_t*, const wchar_t*) {
    return Tell("OnSetting");
}

int32_t TrappedModule::ExecuteTask(const wchar_t* /*taskId*/, ITaskBag* bag) {
    return Do("ExecuteTask", *bag);
}
int32_t TrappedModule::UpdateTaskStatus(const wchar_t* /*taskId*/, ITaskBag* bag) {
    return Do("UpdateTaskStatus", *bag);
}
int32_t TrappedModule::StopTask(const wchar_t* /*taskId*/, ITaskBag* bag) {
    return Do("StopTask", *bag);
}
int32_t TrappedModule::RemoveTask(const wchar_t* /*taskId*/, ITaskBag* bag) {
    return Do("RemoveTask", *bag);
}
void TrappedModule::FreeCookie(void* /*cookie*/) {
    trap.Enter("FreeCookie");
}
void TrappedModule::BeginSettings() {
    ADD_FAILURE() << "this slot is never called";
}
void TrappedModule::VisitSetting(const wchar_t*, const wchar_t*, const wchar_t*) {
    trap.Enter("VisitSetting");
}

int32_t TrappedModule::UpdateNotify(const wchar_t*, const wchar_t*, const wchar_t*, uint32_t*) {
    trap.Enter("UpdateNotify");
    return 0;
}
VsKitMsgbus::etag_PRODUCT_RETURN_VALUE TrappedModule::GetProductInfo(VsKit::cp_wchar, VsKit::cp_wchar key,
                                                                     VsKitMsgbus::INYUpdateNotifyCallback::ISet* set) {
    trap.Enter("GetProductInfo");
    set->Set(key);
    return VsKitMsgbus::ProductReturnNotAvailable;
}
int32_t TrappedModule::SetProductInfo(const wchar_t*, const wchar_t*, const wchar_t*) {
    trap.Enter("SetProductInfo");
    return 0;
}

void TrappedModule::OnLogEvent(const LogUtils::LogRecord& /*event*/) {
    trap.Enter("OnLogEvent");
}

bool TrappedModule::Tell(const char* callback) {
    trap.Enter(callback);
    return true;
}

// The module goes on using the bag after the trap, whatever the trap has done to the bridge.
int32_t TrappedModule::Do(const char* callback, ITaskBag& bag) {
    trap.Enter(callback);
    bag.CountEntries();
    bag.IterateSettings(this, L"Scan");
    return Succeeded;
}
