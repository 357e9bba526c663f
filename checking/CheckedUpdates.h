#pragma once

#include "VsMsgbus/UpdateNotify.h"
#include "checking/Lent.h"
#include "checking/Registration.h"

namespace checking {

// The set that the bridge lends a module's callback, through which it answers the agent's question.
class CheckedUpdateSet final : public VsKitMsgbus::INYUpdateNotifyCallback::ISet,
                               public Lent<VsKitMsgbus::INYUpdateNotifyCallback::ISet, LentFor::AnyThread> {
public:
    bool Set(const wchar_t* value) override;
};

// A module's update callback.
class CheckedUpdates final : public VsKitMsgbus::INYUpdateNotifyCallback, public Registration {
public:
    CheckedUpdates(const wchar_t* productId, VsKitMsgbus::INYUpdateNotifyCallback* moduleCallback)
        : Registration(services[Update], productId, moduleCallback), callback(moduleCallback) {}

    int32_t UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third, uint32_t* number) override;
    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                          ISet* set) override;
    int32_t SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) override;

private:
    VsKitMsgbus::INYUpdateNotifyCallback* const callback;
};

}  // namespace checking
