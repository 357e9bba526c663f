// How the agent's notifications reach the module's enforcer, and what becomes of what it throws.
#include <atomic>
#include <climits>
#include <new>
#include <stdexcept>

#include "../../values/AgentException.h"
#include "policy/PolicyTest.h"
#include "support/OnPurpose.h"

using corvane::ny::utils::exception;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr char unknownLine[] = "3: Failed to get the policy for product id PRODUCT1000 due to unknown exception";

class Notification : public PolicyTest {};

TEST_F(Notification, AsksForTheLogLevelAndThenEnforces) {
    EXPECT_EQ(Enforce({}), NY_OK);
    EXPECT_EQ(Enforce({}), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(),
                ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000", "GetLogLevel", "EnforcePolicy PRODUCT1000"));
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
}

TEST_F(Notification, RunsOnTheAgentsThread) {
    std::atomic<DWORD> ofEnforce = 0;
    std::atomic<DWORD> ofLevel = 0;
    enforcer.enforce = [&](IPolicyBag&) { ofEnforce = ::GetCurrentThreadId(); };
    enforcer.getLogLevel = [&] {
        ofLevel = ::GetCurrentThreadId();
        return 0;
    };
    const EnforcerRegistration registration(productId, enforcer);
    const PolicyNotice notice(productId);
    ASSERT_EQ(notice.Answer(), NY_OK);
    EXPECT_NE(notice.ThreadId(), 0U);
    EXPECT_EQ(ofEnforce, notice.ThreadId());
    EXPECT_EQ(ofLevel, notice.ThreadId());
}

TEST_F(Notification, KeepsTheUriUntilTheModuleIsDone) {
    EXPECT_EQ(Enforce([](IPolicyBag&) { EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 1U); }), NY_OK);
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 0U);
    EXPECT_EQ(ny_sim_call_count("ny_policy_uri_add_ref"), 1U);
    EXPECT_EQ(ny_sim_call_count("ny_policy_uri_release"), 1U);
}

TEST_F(Notification, WithoutAnEnforcerIsToldToTheLogAndSucceeds) {
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(sink.log.Lines(), ElementsAre(notCompletedLine));
}

TEST_F(Notification, WithoutAnEnforcerAndASinkSucceedsInSilence) {
    const OnPurpose mistakes{"EXIT-UNKNOWN"};
    VsMsgbusExit("PRODUCT9000", nullptr);
    EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Notification, WithoutAProductIsRefusedAtOnce) {
    const EnforcerRegistration registration(productId, enforcer);
    ny_sim_clear_calls();
    EXPECT_EQ(PolicyNotice(productId, nullptr).Answer(), 3);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(Notification, IsForTheProductThatTheAgentNames) {
    const EnforcerRegistration registration("PRODUCT2000", enforcer, &modulesSink);
    EXPECT_EQ(PolicyNotice(productId, "PRODUCT2000").Answer(), NY_OK);
    EXPECT_EQ(PolicyNotice(productId, "product2000").Answer(), NY_OK);
    EXPECT_EQ(PolicyNotice(productId, "").Answer(), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT2000"));
    EXPECT_THAT(sink.log.Lines(), ElementsAre("3: Policy collection was not completed for product id product2000",
                                              "3: Policy collection was not completed for product id "));
}

TEST_F(Notification, NamesTheProductInItsOwnLetters) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    const Product other("\xC3\x9C-%s", nullptr, VsMsgbusServicePolicy);
    EXPECT_EQ(PolicyNotice("\xC3\x9C-%s").Answer(), NY_OK);
    enforcer.enforce = [](IPolicyBag&) { throw 42; };
    const EnforcerRegistration registration("\xC3\x9C-%s", enforcer);
    EXPECT_EQ(PolicyNotice("\xC3\x9C-%s").Answer(), 3);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy \xC3\x9C-%s"));
    EXPECT_THAT(sink.log.Lines(),
                ElementsAre("3: Policy collection was not completed for product id \xC3\x9C-%s",
                            "3: Failed to get the policy for product id \xC3\x9C-%s due to unknown exception"));
}

TEST_F(Notification, WritesNothingForAnyLogLevel) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "sections": [{"settings": {"x": "1"}}]}])");
    for (const int32_t level : {0, 3, 4, 5, INT_MAX, -1, INT_MIN}) {
        enforcer.getLogLevel = [level] { return level; };
        Walk();
    }
    EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

class EnforcerThrows : public PolicyTest {
protected:
    void ExpectAnswer(int32_t answer, const std::string& line) {
        const EnforcerRegistration registration(productId, enforcer, &modulesSink);
        EXPECT_EQ(PolicyNotice(productId).Answer(), answer);
        EXPECT_THAT(sink.log.Take(), ElementsAre(line));
        EXPECT_THAT(modulesSink.log.Lines(), IsEmpty());
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 0U);
        // The next notification is one like any other.
        enforcer.enforce = {};
        enforcer.getLogLevel = {};
        EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK);
        EXPECT_THAT(sink.log.Lines(), IsEmpty());
    }

    const OnPurpose usualMistakes{"CALLBACK-THREW"};
};

TEST_F(EnforcerThrows, AnInt) {
    enforcer.enforce = [](IPolicyBag&) { throw 42; };
    ExpectAnswer(3, unknownLine);
}

TEST_F(EnforcerThrows, ThatMemoryRanOut) {
    enforcer.enforce = [](IPolicyBag&) { throw std::bad_alloc(); };
    ExpectAnswer(3, unknownLine);
}

TEST_F(EnforcerThrows, AStandardException) {
    enforcer.enforce = [](IPolicyBag&) { throw std::runtime_error("a reason of its own"); };
    ExpectAnswer(3, unknownLine);
}

TEST_F(EnforcerThrows, TheAgentsException) {
    enforcer.enforce = [](IPolicyBag&) { throw exception(77); };
    ExpectAnswer(77, "3: Failed to get the policy for product id PRODUCT1000, exception: [77]");
}

TEST_F(EnforcerThrows, TheAgentsExceptionWithANegativeCode) {
    enforcer.enforce = [](IPolicyBag&) { throw exception(INT_MIN); };
    ExpectAnswer(INT_MIN, "3: Failed to get the policy for product id PRODUCT1000, exception: [-2147483648]");
}

TEST_F(EnforcerThrows, FromGetLogLevel) {
    enforcer.getLogLevel = []() -> int32_t { throw 42; };
    ExpectAnswer(3, unknownLine);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "GetLogLevel", "EnforcePolicy PRODUCT1000"));
}

TEST_F(EnforcerThrows, TheAgentsExceptionFromGetLogLevel) {
    enforcer.getLogLevel = []() -> int32_t { throw exception(5); };
    ExpectAnswer(5, "3: Failed to get the policy for product id PRODUCT1000, exception: [5]");
}

// From a callback it is the walk's failure, as when the agent had answered that code.
TEST_F(EnforcerThrows, TheAgentsExceptionFromACallbackOfAWalk) {
    HoldPolicies(R"([{"softwareId": "PRODUCT1000", "name": "N"}])");
    NotingCallbacks callbacks;
    callbacks.answer = [](const std::string&) -> bool { throw exception(77); };
    EXPECT_EQ(Enforce([&](IPolicyBag& bag) {
                  EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
                  EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_BAG), 0U);
                  EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_ITERATOR), 0U);
              }),
              NY_OK);
    EXPECT_THAT(modulesSink.log.Lines(), ElementsAre(std::string(iterationLine) + "77"));
}

TEST_F(EnforcerThrows, AndSoDoesTheSink) {
    const OnPurpose mistakes{"EXIT-UNKNOWN", "WALK-OF-OTHER-ID"};
    class ThrowingSink final : public VsKitMsgbus::ILogSink {
    public:
        void Write(int /*level*/, const wchar_t* /*text*/) override {
            ++calls;
            throw 1;
        }
        std::atomic<int> calls = 0;
    };
    ThrowingSink throwing;
    VsMsgbusExit("PRODUCT9000", nullptr);
    const Product other("PRODUCT2000", &throwing, VsMsgbusServicePolicy);
    NotingCallbacks callbacks;
    enforcer.enforce = [&](IPolicyBag& bag) {
        ny_sim_fail_call("ny_policy_get", 1, 77, NY_SIM_ONCE);
        EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
        throw exception(78);
    };
    const EnforcerRegistration registration("PRODUCT2000", enforcer, &throwing);
    EXPECT_EQ(PolicyNotice("PRODUCT2000").Answer(), 78);
    EXPECT_EQ(throwing.calls, 2);
}

}  // namespace
