// The texts of failed update calls, which are composed and go to no log; and what no module can see of a registration.
#include <new>

#include "msgbus/instance/VsMsgbusFixture.h"
#include "support/AgentCalls.h"
#include "support/AgentUpdate.h"
#include "support/FailingMemory.h"
#include "support/UpdateCallback.h"
#include "updater/CTheUpdateNotify.h"
#include "updater/VsMsgbusUpdateInfoProvider.h"

namespace {

using corvane::ny::utils::exception;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char notifyFailed[] = "Failed to execute update notify for productId PRODUCT1000, exception ";
constexpr char setFailed[] = "Failed to execute set product info for productId PRODUCT1000, exception ";
constexpr char getFailed[] = "Failed to execute get product info for productId PRODUCT1000, exception ";

class UpdateText : public VsMsgbusFixture {
protected:
    void SetUp() override {
        VsMsgbusFixture::SetUp();
        bridge->AddProduct("PRODUCT1000", 0x100);
        Notify(1);
        ASSERT_EQ(ny_sim_has_updater("PRODUCT1000"), 1);
        dropped.log.Take();
    }
    void TearDown() override {
        Notify(0);
        EXPECT_THAT(sink.log.Lines(), IsEmpty());
        VsMsgbusFixture::TearDown();
    }

    void Throw(const std::function<int32_t()>& throwing) {
        callback.onNotify = [=](uint32_t&) { return throwing(); };
        callback.onSet = throwing;
        callback.onGet = [=](UpdateCallback::ISet&) { return throwing(); };
    }

    // Every call fails, is answered as without a callback, and drops the text with that code.
    void ExpectTexts(const std::string& code) {
        EXPECT_EQ(Update(NotifyCall()), "answer 0, result 2");
        EXPECT_EQ(Update(SetCall()), "answer 0, result 1");
        EXPECT_EQ(Update(GetCall()), "answer 0, result 1");
        EXPECT_THAT(dropped.log.Take(), ElementsAre(notifyFailed + code, setFailed + code, getFailed + code));
    }

    UpdateCallback callback;
    const UpdateRegistration registration{"PRODUCT1000", callback};
};

TEST_F(UpdateText, AreNoneWhenAllGoesWell) {
    EXPECT_EQ(Update(NotifyCall()), "answer 0, result 20");
    EXPECT_EQ(Update(SetCall()), "answer 0, result 40");
    EXPECT_EQ(Update(GetCall()), "answer 0, result 30, value <>");
    EXPECT_EQ(Update(EventCall()), "answer 0");
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

TEST_F(UpdateText, NameTheCodeOfTheAgentsException) {
    for (const int32_t code : {77, -1, 0, 705, -2147483647 - 1}) {
        Throw([code]() -> int32_t { throw exception(code); });
        ExpectTexts(std::to_string(code));
    }
}

// An exception without a code counts as code 3, a failure that is not the agent's.
TEST_F(UpdateText, NameTheCodeOfAFailureThatIsNoneOfTheAgents) {
    Throw([]() -> int32_t { throw 42; });
    ExpectTexts("3");
    Throw([]() -> int32_t { throw std::bad_alloc(); });
    ExpectTexts("3");
}

TEST_F(UpdateText, NameTheCodeOfAnAgentCallThatFailed) {
    ASSERT_EQ(ny_sim_fail_call("ny_variant_create_from_string", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    ExpectTexts("77");
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
}

TEST_F(UpdateText, NameTheCodeOfEveryLaterAgentCallThatFailed) {
    ny_sim_clear_calls();
    Update(GetCall());
    const size_t count = ny_sim_call_count("ny_variant_create_from_string");
    ASSERT_EQ(count, 4U);
    for (uint32_t nth = 1; nth <= count; ++nth) {
        ASSERT_EQ(ny_sim_fail_call("ny_variant_create_from_string", nth, -5, NY_SIM_ONCE), NY_OK);
        EXPECT_EQ(Update(GetCall()), "answer 0, result 1") << nth;
        EXPECT_THAT(dropped.log.Take(), ElementsAre(std::string(getFailed) + "-5")) << nth;
    }
}

TEST_F(UpdateText, NameTheProductInItsOwnLetters) {
    const std::string id = "\xC3\x9C-%s";
    bridge->AttachProduct(id, 0x100);
    const UpdateRegistration ofOther(id, callback);
    Throw([]() -> int32_t { throw exception(5); });
    Update(NotifyCall(id));
    EXPECT_THAT(dropped.log.Take(),
                ElementsAre("Failed to execute update notify for productId \xC3\x9C-%s, exception 5"));
    bridge->StopIosForProduct(id);
}

class UpdateRecord : public testing::Test {
protected:
    UpdateCallback callback;
    std::wstring value = L"before";
};

TEST_F(UpdateRecord, KeepsWhatTheModuleRegistered) {
    const CTheUpdateNotify record(&callback, this);
    EXPECT_EQ(record.callback.Address(), &callback);
    EXPECT_EQ(record.reserved, nullptr);
    EXPECT_EQ(record.context, this);
    EXPECT_EQ(record.further, nullptr);
}

TEST_F(UpdateRecord, EmptiesTheValueBeforeTheModuleIsAsked) {
    const CTheUpdateNotify record(&callback, nullptr);
    EXPECT_EQ(record.RunGetProductInfo(L"", L"", value), UpdateCallback::got);
    EXPECT_EQ(value, L"");
}

// The module is told true and nothing is thrown through it; the question fails behind it.
TEST_F(UpdateRecord, FailsWhenTheValueFindsNoMemory) {
    const std::wstring longText(1000, L'x');
    callback.onGet = [&](UpdateCallback::ISet& set) {
        const FailingMemory memory;
        EXPECT_TRUE(set.Set(longText.c_str()));
        return 0;
    };
    const CTheUpdateNotify record(&callback, nullptr);
    EXPECT_THROW(record.RunGetProductInfo(L"", L"", value), std::bad_alloc);
}

TEST_F(UpdateRecord, TakesAValueAfterOneThatFoundNoMemory) {
    const std::wstring longText(1000, L'x');
    callback.onGet = [&](UpdateCallback::ISet& set) {
        {
            const FailingMemory memory;
            EXPECT_TRUE(set.Set(longText.c_str()));
        }
        EXPECT_TRUE(set.Set(L"short"));
        return 5;
    };
    const CTheUpdateNotify record(&callback, nullptr);
    EXPECT_EQ(record.RunGetProductInfo(L"", L"", value), 5);
    EXPECT_EQ(value, L"short");
}

TEST_F(UpdateRecord, IsRefusedWhenThereIsNoMemoryForIt) {
    const FailingMemory memory;
    EXPECT_FALSE(VsKitMsgbusSetUpdateNotify(L"PRODUCT1000", &callback, nullptr));
}

// A second registration's record is never freed, kept on purpose; the first one's is, and can be replaced.
TEST_F(UpdateRecord, OfASecondRegistrationIsLeftAliveAndOutOfForce) {
    UpdateCallback second;
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(L"PRODUCT1000", &callback, nullptr));
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(L"PRODUCT1000", &second, nullptr));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(L"PRODUCT1000"));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(L"PRODUCT1000"));
}

}  // namespace
