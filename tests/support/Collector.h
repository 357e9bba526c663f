#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "VsMsgbus/CollectProperties.h"
#include "support/HeldLocks.h"
#include "support/LineLog.h"
#include "support/ModuleRegistration.h"
#include "support/Text.h"

// A module's collector that notes how it is called and does what the test wants.
class Collector final : public VsKitMsgbus::INYCollectProperties {
public:
    explicit Collector(std::function<void(ISet&)> whatToSet = {}) : collect(std::move(whatToSet)) {}

    void CollectProperties(bool full, ISet* set) override {
        ExpectNoLockHeld("CollectProperties");
        log.Add(full ? "CollectProperties(true)" : "CollectProperties(false)");
        if (collect) {
            collect(*set);
        }
    }

    int32_t GetLogLevel() override {
        ExpectNoLockHeld("GetLogLevel");
        log.Add("GetLogLevel");
        return getLogLevel ? getLogLevel() : 0;
    }

    std::function<void(ISet&)> collect;
    std::function<int32_t()> getLogLevel;
    LineLog log;
};

using Registration =
    ModuleRegistration<Collector, &VsKitMsgbusSetCollectProperties, &VsKitMsgbusRemoveCollectProperties>;
