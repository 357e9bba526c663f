// How many locks of the bridge's a warm call takes: numbers to be changed on purpose or not at all. On Windows each
// costs two interlocked operations.
#include "support/AgentTasks.h"
#include "support/AgentUpdate.h"
#include "support/BridgeTest.h"
#include "support/Enforcer.h"
#include "support/PolicyNotice.h"
#include "support/TaskEnforcer.h"
#include "support/UpdateCallback.h"
#include "win32/held_locks.h"

namespace {

class LockCost : public InstalledAgentTest {
protected:
    // Of the second call: the first one loads what it needs of the agent.
    template <class Call>
    static size_t LocksOf(const Call& call) {
        call();
        const size_t before = LocksTakenByProcess();
        call();
        return LocksTakenByProcess() - before;
    }

    const std::string productId = "PRODUCT1000";
};

// The table of calls to begin and to end the agent's call, the table of collectors, and the record's gate to enter and
// to leave.
TEST_F(LockCost, OfAPropertyRequestIsFive) {
    const Registration registration(productId, collector);
    const Product product(productId, &sink);
    EXPECT_EQ(LocksOf([&] { EXPECT_EQ(Ask(productId), answered); }), 5U);
}

TEST_F(LockCost, DoesNotGrowWithTheProperties) {
    collector.collect = [](auto& set) {
        for (int i = 0; i < 100; ++i) {
            EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
        }
    };
    const Registration registration(productId, collector);
    const Product product(productId, &sink);
    EXPECT_EQ(LocksOf([&] { Ask(productId); }), 5U);
}

TEST_F(LockCost, OfAPolicyNotificationIsFive) {
    Enforcer enforcer;
    const EnforcerRegistration registration(productId, enforcer);
    const Product product(productId, &sink, VsMsgbusServicePolicy);
    EXPECT_EQ(LocksOf([&] { EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK); }), 5U);
}

TEST_F(LockCost, OfAnUpdateNoticeIsFive) {
    UpdateCallback callback;
    const UpdateRegistration registration(productId, callback);
    const Product product(productId, &sink, VsMsgbusServiceUpdate);
    EXPECT_EQ(LocksOf([&] { Update(NotifyCall()); }), 5U);
}

// Five as the others, and three of the use of the agent with which the status is reported: the session shared, its gate
// entered and left.
TEST_F(LockCost, OfATaskThatIsReportedIsEight) {
    TaskEnforcer enforcer;
    const TaskEnforcerRegistration registration(productId, enforcer);
    const Product product(productId, &sink, VsMsgbusServiceTask);
    SetTasks(R"([{"id": "1", "product": "PRODUCT1000", "name": "scan"}])");
    EXPECT_EQ(LocksOf([&] { EXPECT_EQ(AnswerOf("1"), NY_OK); }), 8U);
}

TEST_F(LockCost, OfAnInformationReadIsThree) {
    const Product product(productId, &sink, 0);
    ASSERT_EQ(ny_sim_set_information("GUID", "\"a text\""), NY_OK);
    EXPECT_EQ(LocksOf([] {
                  VsKitMsgbus::lpc_buffer text{};
                  EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationGUID, &text), 1);
                  text.Release();
              }),
              3U);
}

TEST_F(LockCost, OfAnEncryptionIsThree) {
    const Product product(productId, &sink, 0);
    EXPECT_EQ(LocksOf([] {
                  const unsigned char data[16] = {};
                  unsigned char out[256];
                  unsigned int size = 0;
                  EXPECT_EQ(VsKitMsgbusEncryptData(data, sizeof data, out, &size, 0), 0);
              }),
              3U);
}

}  // namespace
