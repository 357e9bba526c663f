#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "VsMsgbus/CollectProperties.h"
#include "VsMsgbus/LogSink.h"
#include "support/HeldLocks.h"
#include "support/LineLog.h"
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

// A collector in the table for as long as the object lives, or until Remove.
class Registration {
public:
    Registration(const std::string& productId, Collector& collector, VsKitMsgbus::ILogSink* sink = nullptr)
        : id(Wide(productId)) {
        EXPECT_TRUE(VsKitMsgbusSetCollectProperties(id.c_str(), &collector, sink));
    }
    ~Registration() { Remove(); }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    void Remove() { EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(id.c_str())); }

private:
    const std::wstring id;
};
