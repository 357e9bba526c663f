// Health-check callbacks, in the record where they are kept.
#include "VsMsgbus/HealthCheck.h"

#include <gmock/gmock.h>

#include "VsMsgbus/Entry.h"
#include "msgbus/instance/HealthCheckRecord.h"
#include "support/AgentEnvironment.h"
#include "support/CapturingSink.h"
#include "support/FailingMemory.h"
#include "support/Product.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// These are never called. The tests tell them apart by their addresses, and their bodies differ so that the linker does
// not merge them.
void FirstCheck() {
    ADD_FAILURE() << "the first one was called";
}
void SecondCheck() {
    ADD_FAILURE() << "the second one was called";
}

// The record lives as long as the process: tests of one process share it, each with names of its own.
class HealthCheck : public AgentTest {
protected:
    // The callback kept under that name; null when there is none.
    static VsKitHealthCheckCallback Find(const std::string& name) {
        const auto record = CopyHealthCheckRecord();
        if (record == nullptr) {
            return nullptr;
        }
        const auto found = record->callbacks.find(name);
        return found != record->callbacks.end() ? found->second : nullptr;
    }
    static size_t Count() {
        const auto record = CopyHealthCheckRecord();
        return record != nullptr ? record->callbacks.size() : 0;
    }

    // Makes sure that there is a record.
    static void EnterAndLeave() { Product("PRODUCT1000", nullptr, 0U).Exit(); }
};

// Alone in its process under Wine; natively, where processes are shared, the record may be there already.
TEST_F(HealthCheck, AreNotKeptBeforeTheFirstEntry) {
    const bool isFirst = CopyHealthCheckRecord() == nullptr;
    VsKitHealthCheckRegisterCB(L"early", &FirstCheck);
    EXPECT_EQ(Find("early"), isFirst ? nullptr : &FirstCheck);
    const Product product("PRODUCT1000", nullptr, 0U);
    VsKitHealthCheckRegisterCB(L"early", &FirstCheck);
    EXPECT_EQ(Find("early"), &FirstCheck);
}

TEST_F(HealthCheck, AreReplacedByASecondOneOfTheSameName) {
    EnterAndLeave();
    VsKitHealthCheckRegisterCB(L"twice", &FirstCheck);
    const size_t count = Count();
    VsKitHealthCheckRegisterCB(L"twice", &SecondCheck);
    EXPECT_EQ(Find("twice"), &SecondCheck);
    EXPECT_EQ(Count(), count);
}

TEST_F(HealthCheck, AreKeptUnderTheLowEightBitsOfEachUnit) {
    EnterAndLeave();
    VsKitHealthCheckRegisterCB(L"bits \x0141\x00E9\xFF42", &FirstCheck);
    EXPECT_EQ(Find("bits \x41\xE9\x42"), &FirstCheck);
    const size_t count = Count();
    VsKitHealthCheckRegisterCB(L"bits A\x00E9\x0442", &SecondCheck);
    EXPECT_EQ(Find("bits \x41\xE9\x42"), &SecondCheck) << "two names that collide";
    EXPECT_EQ(Count(), count);
}

// A unit whose low bits are zero is a byte like any other.
TEST_F(HealthCheck, AreKeptUnderANameWithAZeroInIt) {
    EnterAndLeave();
    VsKitHealthCheckRegisterCB(L"zero \x0100 behind", &FirstCheck);
    EXPECT_EQ(Find(std::string("zero \0 behind", 13)), &FirstCheck);
}

TEST_F(HealthCheck, AreOrderedByBytesTheShorterFirst) {
    EnterAndLeave();
    for (const wchar_t* const name : {L"order \x00E9", L"order b", L"order ab", L"order a", L"order B"}) {
        VsKitHealthCheckRegisterCB(name, &FirstCheck);
    }
    std::vector<std::string> names;
    const auto record = CopyHealthCheckRecord();
    for (const auto& [name, callback] : record->callbacks) {
        if (name.starts_with("order ")) {
            names.push_back(name);
        }
    }
    EXPECT_THAT(names, ElementsAre("order B", "order a", "order ab", "order b", "order \xE9"));
}

TEST_F(HealthCheck, TakeAnEmptyNameAndRefuseNull) {
    EnterAndLeave();
    VsKitHealthCheckRegisterCB(L"", &FirstCheck);
    EXPECT_EQ(Find(""), &FirstCheck);
    const size_t count = Count();
    VsKitHealthCheckRegisterCB(nullptr, &FirstCheck);
    VsKitHealthCheckRegisterCB(L"null", nullptr);
    VsKitHealthCheckRegisterCB(L"", nullptr);
    VsKitHealthCheckRegisterCB(nullptr, nullptr);
    EXPECT_EQ(Find(""), &FirstCheck);
    EXPECT_EQ(Count(), count);
}

TEST_F(HealthCheck, StayAfterTheLastExitAndAreTakenThen) {
    {
        const Product product("PRODUCT1000", nullptr, 0U);
        VsKitHealthCheckRegisterCB(L"staying", &FirstCheck);
    }
    VsKitHealthCheckRegisterCB(L"late", &SecondCheck);
    const Product again("PRODUCT2000", nullptr, 0U);
    EXPECT_EQ(Find("staying"), &FirstCheck);
    EXPECT_EQ(Find("late"), &SecondCheck);
}

// Compares the record's members about the bridge: the product's id, its sink, and the client.
void ExpectRecord(const std::string& productId, const VsKitMsgbus::ILogSink* sink, const VsMsgbusClientRecord* client) {
    const auto record = CopyHealthCheckRecord();
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->productId, productId);
    EXPECT_EQ(record->logSink.Address(), sink);
    EXPECT_EQ(record->clientRecord, client);
}

TEST_F(HealthCheck, AreKeptBesideTheProductThatStartedTheBridge) {
    environment.InstallAgent();
    CapturingSink sink;
    CapturingSink othersSink;
    {
        const Product product("PRODUCT1000", &sink, 0U);
        EXPECT_NE(GetMsgbusClient(), nullptr);
        ExpectRecord("PRODUCT1000", &sink, GetMsgbusClient());
        const Product other("PRODUCT2000", &othersSink, 0U);
        ExpectRecord("PRODUCT1000", &sink, GetMsgbusClient());
    }
    ExpectRecord("PRODUCT1000", &sink, nullptr);
    const Product product("PRODUCT3000", nullptr, 0U);
    ExpectRecord("PRODUCT3000", nullptr, GetMsgbusClient());
}

// Each Entry is one that may have to start the bridge then.
TEST_F(HealthCheck, AreKeptBesideTheLastThatEnteredWithoutAnAgent) {
    CapturingSink sink;
    CapturingSink othersSink;
    const Product product("PRODUCT1000", &sink, 0U);
    ExpectRecord("PRODUCT1000", &sink, GetMsgbusClient());
    const Product other("PRODUCT2000", &othersSink, 0U);
    ExpectRecord("PRODUCT2000", &othersSink, GetMsgbusClient());
}

TEST_F(HealthCheck, AreDroppedWhenThereIsNoMemory) {
    EnterAndLeave();
    const size_t count = Count();
    for (size_t left = 0; Find("a name that is too long to be kept without memory") == nullptr; ++left) {
        ASSERT_LT(left, 20U);
        ASSERT_EQ(Count(), count);
        const FailingMemory memory(left, 1);
        VsKitHealthCheckRegisterCB(L"a name that is too long to be kept without memory", &FirstCheck);
    }
}

}  // namespace
