#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "VsMsgbus/UpdateNotify.h"
#include "support/HeldLocks.h"
#include "support/LineLog.h"
#include "support/ModuleRegistration.h"
#include "support/Text.h"

// A module's update callback that notes how it is called and does what the test wants; without that it answers each
// call with a number of its own.
class UpdateCallback final : public VsKitMsgbus::INYUpdateNotifyCallback {
public:
    static constexpr int32_t notified = 20;
    static constexpr int32_t got = 30;
    static constexpr int32_t set = 40;

    int32_t UpdateNotify(const wchar_t* second, const wchar_t* fourth, const wchar_t* third,
                         uint32_t* number) override {
        ExpectNoLockHeld("UpdateNotify");
        log.Add("UpdateNotify(" + Narrow(second) + ", " + Narrow(fourth) + ", " + Narrow(third) + ", " +
                std::to_string(*number) + ")");
        return onNotify ? onNotify(*number) : notified;
    }

    VsKitMsgbus::etag_PRODUCT_RETURN_VALUE GetProductInfo(VsKit::cp_wchar second, VsKit::cp_wchar key,
                                                          ISet* receiver) override {
        ExpectNoLockHeld("GetProductInfo");
        log.Add("GetProductInfo(" + Narrow(second) + ", " + Narrow(key) + ")");
        return static_cast<VsKitMsgbus::etag_PRODUCT_RETURN_VALUE>(onGet ? onGet(*receiver) : got);
    }

    int32_t SetProductInfo(const wchar_t* second, const wchar_t* key, const wchar_t* value) override {
        ExpectNoLockHeld("SetProductInfo");
        log.Add("SetProductInfo(" + Narrow(second) + ", " + Narrow(key) + ", " + Narrow(value) + ")");
        return onSet ? onSet() : set;
    }

    std::function<int32_t(uint32_t& number)> onNotify;
    std::function<int32_t(ISet& receiver)> onGet;
    std::function<int32_t()> onSet;
    LineLog log;
};

using UpdateRegistration =
    ModuleRegistration<UpdateCallback, &VsKitMsgbusSetUpdateNotify, &VsKitMsgbusRemoveUpdateNotify>;
