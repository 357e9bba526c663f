// How many locks of the bridge's a warm call takes: numbers to be changed on purpose or not at all. On Windows each
// costs two interlocked operations.
#include <algorithm>
#include <mutex>
#include <vector>

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
    // Makes the call twice, and returns the locks that the second one takes. The first one loads the agent's functions.
    template <class Call>
    static std::vector<const void*> LocksOf(const Call& call) {
        static std::mutex mutex;
        static std::vector<const void*> locks;
        call();
        locks.clear();
        ListenToLocks([](const void* lock) {
            const std::lock_guard guard(mutex);
            locks.push_back(lock);
        });
        call();
        ListenToLocks(nullptr);
        return locks;
    }

    const std::string productId = "PRODUCT1000";
};

// The table of the agent's calls, the table of collectors, and the record's gate to enter and to leave.
TEST_F(LockCost, OfAPropertyRequestIsFour) {
    const Registration registration(productId, collector);
    const Product product(productId, &sink);
    EXPECT_EQ(LocksOf([&] { EXPECT_EQ(Ask(productId), answered); }).size(), 4U);
}

TEST_F(LockCost, DoesNotGrowWithTheProperties) {
    collector.collect = [](auto& set) {
        for (int i = 0; i < 100; ++i) {
            EXPECT_TRUE(set.SetProperty(L"general", L"version", L"1.0"));
        }
    };
    const Registration registration(productId, collector);
    const Product product(productId, &sink);
    EXPECT_EQ(LocksOf([&] { Ask(productId); }).size(), 4U);
}

// Threads that ask different products wait for each other at the table of collectors alone.
TEST_F(LockCost, ThatRequestsForDifferentProductsShareIsOne) {
    const std::string otherId = "PRODUCT2000";
    const Registration registration(productId, collector);
    const Registration otherRegistration(otherId, collector);
    const Product product(productId, &sink);
    const Product otherProduct(otherId, &sink);
    const auto locks = LocksOf([&] { Ask(productId); });
    const auto others = LocksOf([&] { Ask(otherId); });
    EXPECT_EQ(
        std::count_if(locks.begin(), locks.end(),
                      [&](const void* lock) { return std::find(others.begin(), others.end(), lock) != others.end(); }),
        1);
}

TEST_F(LockCost, OfAPolicyNotificationIsFour) {
    Enforcer enforcer;
    const EnforcerRegistration registration(productId, enforcer);
    const Product product(productId, &sink, VsMsgbusServicePolicy);
    EXPECT_EQ(LocksOf([&] { EXPECT_EQ(PolicyNotice(productId).Answer(), NY_OK); }).size(), 4U);
}

TEST_F(LockCost, OfAnUpdateNoticeIsFour) {
    UpdateCallback callback;
    const UpdateRegistration registration(productId, callback);
    const Product product(productId, &sink, VsMsgbusServiceUpdate);
    EXPECT_EQ(LocksOf([&] { Update(NotifyCall()); }).size(), 4U);
}

// Four as the others, and three of the use of the agent with which the status is reported: the session shared, its gate
// entered and left.
TEST_F(LockCost, OfATaskThatIsReportedIsSeven) {
    TaskEnforcer enforcer;
    const TaskEnforcerRegistration registration(productId, enforcer);
    const Product product(productId, &sink, VsMsgbusServiceTask);
    SetTasks(R"([{"id": "1", "product": "PRODUCT1000", "name": "scan"}])");
    EXPECT_EQ(LocksOf([&] { EXPECT_EQ(AnswerOf("1"), NY_OK); }).size(), 7U);
}

TEST_F(LockCost, OfAnInformationReadIsThree) {
    const Product product(productId, &sink, 0);
    ASSERT_EQ(ny_sim_set_information("GUID", "\"a text\""), NY_OK);
    EXPECT_EQ(LocksOf([] {
                  VsKitMsgbus::lpc_buffer text{};
                  EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationGUID, &text), 1);
                  text.Release();
              }).size(),
              3U);
}

TEST_F(LockCost, OfAnEncryptionIsThree) {
    const Product product(productId, &sink, 0);
    EXPECT_EQ(LocksOf([] {
                  const unsigned char data[16] = {};
                  unsigned char out[256];
                  unsigned int size = 0;
                  EXPECT_EQ(VsKitMsgbusEncryptData(data, sizeof data, out, &size, 0), 0);
              }).size(),
              3U);
}

// A second product enters and leaves while the agent runs.
TEST_F(LockCost, OfAnEntryAndItsExitAreFortyThree) {
    const Product first(productId, &sink);
    EXPECT_EQ(LocksOf([&] { const Product second("PRODUCT2000", &sink); }).size(), 43U);
}

}  // namespace
