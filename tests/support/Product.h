#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>

#include "VsMsgbus/Entry.h"
#include "support/OnPurpose.h"

// A product in the bridge: enters at its construction, leaves at its end or before.
class Product {
public:
    explicit Product(std::string productId = "PRODUCT1000", VsKitMsgbus::ILogSink* sink = nullptr,
                     uint32_t mask = VsMsgbusServiceProperty)
        : id(std::move(productId)) {
        // Most tests are not about what is logged.
        const OnPurpose mistakes{"ENTRY-NO-SINK"};
        isEntered = VsMsgbusEntry(id.c_str(), mask, sink, &instance);
    }
    ~Product() { Exit(); }
    Product(const Product&) = delete;
    Product& operator=(const Product&) = delete;

    // The answer of Entry; one that is false may still have given an instance.
    bool IsEntered() const { return isEntered; }
    VsMsgbus* Instance() const { return instance; }
    const std::string& Id() const { return id; }

    void Exit() {
        if (VsMsgbus* const left = std::exchange(instance, nullptr)) {
            EXPECT_TRUE(VsMsgbusExit(id.c_str(), left));
        }
    }

private:
    std::string id;
    VsMsgbus* instance = nullptr;
    bool isEntered = false;
};
