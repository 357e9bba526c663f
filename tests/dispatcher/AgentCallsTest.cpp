// The objects that the agent may call: looked up in a record before their address is used, and shared by the calls
// under way.
#include "dispatcher/AgentCalls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <utility>

#include "support/Event.h"

namespace {

struct Called {};
struct OtherKind {};

class AgentCallsTest : public testing::Test {
protected:
    ~AgentCallsTest() override { ForgetAgentCalls(this); }

    void Admit(std::string_view product) { AdmitAgentCalls(data, product, called, this); }
    bool IsServed(std::string_view product) const { return static_cast<bool>(AgentCall(data, product)); }

    std::shared_ptr<int> called = std::make_shared<int>(0);
    const AgentCallData data = CallData<Called>(this);
};

TEST_F(AgentCallsTest, WithDataThatWasNeverGivenReachNoService) {
    EXPECT_FALSE(IsServed("PRODUCT1000"));
    EXPECT_FALSE(IsServed(""));
    EXPECT_FALSE(AgentCall(CallData<Called>(nullptr), "PRODUCT1000"));
    EXPECT_EQ(FindAgentCalls(data, "PRODUCT1000"), nullptr);
}

TEST_F(AgentCallsTest, ShareWhatTheyCallUntilTheyReturn) {
    Admit("PRODUCT1000");
    const std::weak_ptr<int> alive = std::exchange(called, nullptr);
    {
        const AgentCall call(data, "PRODUCT1000");
        ASSERT_TRUE(call);
        EndAgentCalls(data, "PRODUCT1000");
        EXPECT_FALSE(alive.expired());
        EXPECT_FALSE(IsServed("PRODUCT1000")) << "this one comes too late";
    }
    EXPECT_TRUE(alive.expired());
}

TEST_F(AgentCallsTest, ForAProductThatWasNeverNamedAreThoseForAnyProduct) {
    Admit("");
    Admit("PRODUCT1000");
    EXPECT_TRUE(IsServed("product1000"));
    EXPECT_TRUE(IsServed(""));
    EndAgentCalls(data, "PRODUCT1000");
    EXPECT_FALSE(IsServed("PRODUCT1000")) << "it was known, and has left";
    EXPECT_TRUE(IsServed("product1000"));
    Admit("PRODUCT1000");
    EXPECT_TRUE(IsServed("PRODUCT1000")) << "it came back";
    EndAgentCalls(data, "");
    EXPECT_FALSE(IsServed("product1000"));
    EXPECT_TRUE(IsServed("PRODUCT1000"));
}

// An address is given again, for something else.
TEST_F(AgentCallsTest, WithTheSameAddressAsAnotherTypeAreNotTakenForIt) {
    Admit("PRODUCT1000");
    EXPECT_FALSE(AgentCall(CallData<OtherKind>(this), "PRODUCT1000"));
}

TEST_F(AgentCallsTest, OfAGroupAreForgottenTogether) {
    const int otherGroup = 0;
    const AgentCallData others = CallData<Called>(&otherGroup);
    AdmitAgentCalls(others, "PRODUCT1000", called, &otherGroup);
    Admit("");
    Admit("PRODUCT1000");
    EndAgentCalls(data, "PRODUCT1000");
    ForgetAgentCalls(this);
    EXPECT_FALSE(IsServed(""));
    EXPECT_TRUE(AgentCall(others, "PRODUCT1000"));
    ForgetAgentCalls(&otherGroup);
    EXPECT_EQ(called.use_count(), 1);
}

TEST_F(AgentCallsTest, AreKnownOnTheirThreadAlone) {
    EXPECT_FALSE(AgentCall::IsUnderWay());
    const AgentCall late(data, "PRODUCT1000");
    EXPECT_TRUE(AgentCall::IsUnderWay()) << "also one that found nothing";
    {
        const AgentCall inner(data, "PRODUCT1000");
        EXPECT_TRUE(AgentCall::IsUnderWay());
    }
    EXPECT_TRUE(AgentCall::IsUnderWay());
    std::thread([] { EXPECT_FALSE(AgentCall::IsUnderWay()); }).join();
}

TEST_F(AgentCallsTest, ThatAreTheLastOnesOutKnowThatTheyStillAre) {
    bool wasUnderWay = false;
    called.reset();
    AdmitAgentCalls(data, "", std::shared_ptr<void>(nullptr, [&](void*) { wasUnderWay = AgentCall::IsUnderWay(); }),
                    this);
    {
        const AgentCall call(data, "");
        EndAgentCalls(data, "");
        EXPECT_FALSE(wasUnderWay);
    }
    EXPECT_TRUE(wasUnderWay);
}

class OutsideAgentCalls : public AgentCallsTest {
protected:
    static void Work(void* test) {
        auto& self = *static_cast<OutsideAgentCalls*>(test);
        self.worker = ::GetCurrentThreadId();
        self.isDone.Set();
    }

    std::atomic<DWORD> worker = 0;
    Event isDone;
};

TEST_F(OutsideAgentCalls, IsAtOnceOnAThreadThatIsOutside) {
    RunOutsideAgentCalls(Work, this);
    EXPECT_TRUE(isDone.IsSet());
    EXPECT_EQ(worker.load(), ::GetCurrentThreadId());
}

TEST_F(OutsideAgentCalls, IsOnAThreadOfItsOwnForOneThatIsInside) {
    const AgentCall call(data, "");
    RunOutsideAgentCalls(Work, this);
    EXPECT_TRUE(isDone.Wait());
    EXPECT_NE(worker.load(), ::GetCurrentThreadId());
}

}  // namespace
