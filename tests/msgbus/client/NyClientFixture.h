#pragma once

#include "dispatcher/groups/ClientHandlerGroup.h"
#include "msgbus/client/ClientLines.h"
#include "msgbus/client/NyClient.h"
#include "msgbus/client/VsMsgbusClientRecord.h"
#include "support/AgentEnvironment.h"
#include "support/AnsweredCalls.h"

// A client of an agent that is installed, with its log lines and its notifications kept.
class NyClientFixture : public AgentTest {
protected:
    void SetUp() override {
        environment.InstallAgent();
        client = MakeClient("PRODUCT1000");
        ASSERT_NE(client, nullptr);
        NyClientSetLogCallback(client, ClientLines::Take, &lines);
    }

    void TearDown() override {
        Release();
        AgentTest::TearDown();
    }

    static NyClient* MakeClient(const char* productId) {
        VsMsgbusClientRecord record;
        EXPECT_EQ(NyClientCreate(productId, &record), NY_OK);
        return record.client;
    }

    void Release() {
        if (client != nullptr) {
            EXPECT_EQ(NyClientRelease(client), NY_OK);
            client = nullptr;
        }
    }

    // Keeps what it is told as "told <state>", and the lines that the client had logged until then before it.
    static void Notify(NyClient* told, uint32_t state, void* userData) {
        auto& fixture = *static_cast<NyClientFixture*>(userData);
        EXPECT_EQ(told, fixture.client);
        fixture.lines.client.Add("told " + std::to_string(state));
        if (fixture.onNotification != nullptr) {
            fixture.onNotification(told, state);
        }
    }

    // Has notifications delivered as after a registration, without a watcher.
    void ExpectNotifications() {
        client->notificationUserData = this;
        client->notification = Notify;
    }
    int32_t NotifyState(uint32_t state) { return NyClientNotifyState(client, state, this); }

    NyClient* client = nullptr;
    ClientLines lines;
    void (*onNotification)(NyClient* told, uint32_t state) = nullptr;
};
