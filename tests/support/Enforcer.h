#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "VsMsgbus/EnforcePolicy.h"
#include "support/HeldLocks.h"
#include "support/LineLog.h"
#include "support/ModuleRegistration.h"
#include "support/Text.h"

using IPolicyBag = VsKitMsgbus::INYEnforcePolicy::IPolicyBag;

// A module's enforcer that notes how it is called and does what the test wants.
class Enforcer final : public VsKitMsgbus::INYEnforcePolicy {
public:
    explicit Enforcer(std::function<void(IPolicyBag&)> whatToDo = {}) : enforce(std::move(whatToDo)) {}

    int32_t GetLogLevel() override {
        ExpectNoLockHeld("GetLogLevel");
        log.Add("GetLogLevel");
        return getLogLevel ? getLogLevel() : 0;
    }

    void Reserved() override { ADD_FAILURE() << "this slot is never called"; }

    void EnforcePolicy(const wchar_t* productId, IPolicyBag* bag) override {
        ExpectNoLockHeld("EnforcePolicy");
        log.Add("EnforcePolicy " + Narrow(productId));
        if (enforce) {
            enforce(*bag);
        }
    }

    std::function<void(IPolicyBag&)> enforce;
    std::function<int32_t()> getLogLevel;
    LineLog log;
};

using EnforcerRegistration =
    ModuleRegistration<Enforcer, &VsKitMsgbusSetEnforcePolicy, &VsKitMsgbusRemoveEnforcerPolicy>;
