#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <string>

#include "VsMsgbus/LogSink.h"
#include "support/Text.h"

// A module's interface in the table of a service for as long as the object lives, or until Remove. `set` and `remove`
// are the service's exports.
template <class Interface, auto set, auto remove>
class ModuleRegistration {
public:
    ModuleRegistration(const std::string& ofProduct, Interface& interfaceOfModule,
                       VsKitMsgbus::ILogSink* sink = nullptr)
        : id(Wide(ofProduct)) {
        EXPECT_TRUE(set(id.c_str(), &interfaceOfModule, sink));
    }
    ~ModuleRegistration() {
        if (isRegistered) {
            Remove();
        }
    }
    ModuleRegistration(const ModuleRegistration&) = delete;
    ModuleRegistration& operator=(const ModuleRegistration&) = delete;

    void Remove() {
        isRegistered = false;
        EXPECT_TRUE(remove(id.c_str()));
    }

private:
    const std::wstring id;
    std::atomic<bool> isRegistered = true;
};
