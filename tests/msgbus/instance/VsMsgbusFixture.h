#pragma once

#include <memory>
#include <string>

#include "msgbus/BridgeLog.h"
#include "msgbus/instance/FakeIo.h"
#include "msgbus/instance/VsMsgbus.h"
#include "support/AgentEnvironment.h"
#include "support/CapturingSink.h"
#include "support/UnloggedTexts.h"
#include "values/AgentException.h"

// A bridge instance without a watcher, on a machine with an agent: the test does the notifying.
class VsMsgbusFixture : public AgentTest {
protected:
    void SetUp() override {
        environment.InstallAgent();
        ASSERT_TRUE(OfferLogSink(&sink));
        bridge = std::make_unique<VsMsgbus>("PRODUCT1000");
        ASSERT_TRUE(bridge->HasClient());
    }

    void TearDown() override {
        Destroy();
        ClearLogSink();
        AgentTest::TearDown();
    }

    void Destroy() { bridge.reset(); }
    void Notify(int32_t type) {
        VsMsgbusClientRecord record;
        record.client = Client();
        bridge->OnNotification(record, type);
    }
    NyClient* Client() const { return bridge->ClientRecord()->client; }

    // A fake service object of that kind, which goes by it.
    FakeIo& Add(int32_t kind) {
        auto io = std::make_shared<FakeIo>(ios, std::to_string(kind));
        FakeIo& added = *io;
        bridge->AddIo(kind, std::move(io));
        return added;
    }
    void AddAll() {
        for (const int32_t kind : {IoKindPolicy, IoKindProperty, IoKindTask, IoKindUpdate}) {
            Add(kind);
        }
    }
    FakeIo& Io(int32_t kind) { return dynamic_cast<FakeIo&>(*bridge->FindIo(kind)); }
    static std::function<void()> Throwing(int32_t code) {
        return [code] { throw corvane::ny::utils::exception(code); };
    }

    LineLog ios;
    CapturingSink sink;
    UnloggedTexts dropped;
    std::unique_ptr<VsMsgbus> bridge;
};
