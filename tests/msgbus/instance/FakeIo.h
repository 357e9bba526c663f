#pragma once

#include <functional>
#include <string>

#include "msgbus/registrations/VsMsgbusIo.h"
#include "support/LineLog.h"

// A service object that keeps what is done to it, as "<name> <what>".
class FakeIo final : public VsMsgbusIo {
public:
    FakeIo(LineLog& lineLog, std::string nameInLog) : log(lineLog), name(std::move(nameInLog)) {}
    ~FakeIo() override { log.Add(name + " destroyed"); }

    void RegisterProduct(const std::string& productId) override { log.Add(name + " registers " + productId); }
    void UnregisterProduct(const std::string& productId) override {
        log.Add(name + " unregisters " + productId);
        if (onUnregister) {
            onUnregister();
        }
    }
    void UnregisterAll() override {
        log.Add(name + " unregisters all");
        if (onUnregisterAll) {
            onUnregisterAll();
        }
    }

    // Both may throw.
    std::function<void()> onUnregister;
    std::function<void()> onUnregisterAll;

private:
    LineLog& log;
    const std::string name;
};
