// The life of an agent client: creation, release, and the record that owns one.
#include <gtest/gtest.h>

#include "dispatcher/Dispatcher.h"
#include "msgbus/client/NyClientFixture.h"
#include "support/FailingMemory.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NyClientTest : public NyClientFixture {};

TEST_F(NyClientTest, CreationRefusesNull) {
    VsMsgbusClientRecord record;
    EXPECT_EQ(NyClientCreate(nullptr, &record), NY_INVALID_ARGUMENT);
    EXPECT_EQ(record.client, nullptr);
    EXPECT_EQ(NyClientCreate("PRODUCT1000", nullptr), NY_INVALID_ARGUMENT);
}

TEST_F(NyClientTest, CreationLoadsTheDispatcherAndLeavesTheRestEmpty) {
    VsMsgbusClientRecord record;
    char productId[] = "PRODUCT2000";
    ASSERT_EQ(NyClientCreate(productId, &record), NY_OK);
    productId[0] = '!';
    const NyClient& created = *record.client;
    EXPECT_EQ(created.productId, "PRODUCT2000");
    EXPECT_NE(created.dispatcher, nullptr);
    EXPECT_EQ(created.clientHandler.load(), nullptr);
    EXPECT_EQ(created.msgbus.load(), nullptr);
    EXPECT_EQ(created.logger, nullptr);
    EXPECT_EQ(created.threadOption, 0U);
    EXPECT_EQ(created.started.load(), 0U);
    EXPECT_EQ(created.notified.load(), 0U);
    EXPECT_EQ(created.notification.load(), nullptr);
    EXPECT_EQ(created.log.sink, nullptr);
    EXPECT_EQ(created.notifier.load(), nullptr);
    EXPECT_EQ(created.passphraseCallback, nullptr);
    EXPECT_EQ(created.passphraseUserData, nullptr);
    EXPECT_EQ(record.isOwned, 0);
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
    NyClientRelease(record.client);
}

// Whichever allocation fails: the context's, the product id's, the dispatcher's.
TEST_F(NyClientTest, CreationWithoutMemoryAnswersSoAndLeavesNothing) {
    Release();
    const char* longProductId = "a product id that is too long to be kept without memory";
    size_t failures = 0;
    for (int32_t result = NY_OUT_OF_MEMORY; result != NY_OK; ++failures) {
        ASSERT_LT(failures, 100U);
        VsMsgbusClientRecord record;
        {
            const FailingMemory memory(failures);
            result = NyClientCreate(longProductId, &record);
        }
        if (result == NY_OK) {
            NyClientRelease(record.client);
        } else {
            EXPECT_EQ(result, NY_OUT_OF_MEMORY);
            EXPECT_EQ(record.client, nullptr);
            EXPECT_EQ(DispatcherUnload("RDXAGENT3000", "ny_client.dll"), NY_INVALID_ARGUMENT) << "a dispatcher is left";
        }
    }
    EXPECT_GT(failures, 3U);
}

TEST_F(NyClientTest, ReleaseRefusesNull) {
    EXPECT_EQ(NyClientRelease(nullptr), NY_INVALID_ARGUMENT);
}

TEST_F(NyClientTest, ReleaseLetsGoOfTheHandlerOnceAndUnloadsTheAgent) {
    ASSERT_EQ(NyClientStart(client), NY_OK);
    ASSERT_NE(::GetModuleHandleA("ny_client.dll"), nullptr);
    ny_sim_clear_calls();
    Release();
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_release 0"));
    EXPECT_EQ(::GetModuleHandleA("ny_client.dll"), nullptr);
}

TEST_F(NyClientTest, ReleaseOfAClientThatNeverStartedCallsNoAgent) {
    Release();
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
}

TEST_F(NyClientTest, ReleaseEndsTheWatcher) {
    ASSERT_EQ(NyClientRegisterNotifications(client, Notify, this), NY_OK);
    lines.client.Take();
    Release();
    EXPECT_THAT(lines.client.Lines(), ElementsAre("5 ny_client: ny client notifier thread exiting...",
                                                  "5 ny_client: ny client notifier thread stopped successfully."));
}

TEST_F(NyClientTest, ARecordReleasesTheClientThatItOwns) {
    {
        VsMsgbusClientRecord record;
        record.client = client;
        record.isOwned = 1;
        ASSERT_EQ(NyClientStart(client), NY_OK);
        ny_sim_clear_calls();
    }
    client = nullptr;
    EXPECT_THAT(AnsweredCalls(), ElementsAre("ny_client_handler_release 0"));
}

TEST_F(NyClientTest, ARecordThatOwnsNothingReleasesNothing) {
    ASSERT_EQ(NyClientStart(client), NY_OK);
    ny_sim_clear_calls();
    {
        VsMsgbusClientRecord record;
        record.client = client;
    }
    EXPECT_THAT(AnsweredCalls(), IsEmpty());
}

}  // namespace
