// The simulated agent's notifications of policies.
#include <functional>

#include "simulator/PolicyFixture.h"
#include "support/Checkpoint.h"
#include "support/PolicyNotice.h"

namespace {

using testing::ElementsAre;

// A product's policy callback, told what to do by the test.
class Callback {
public:
    static int32_t Notify(ny_client_t* client, const char* productId, ny_policy_uri_t* uri, void* data) {
        Callback& self = *static_cast<Callback*>(data);
        self.client = client;
        self.threadId = ::GetCurrentThreadId();
        const int32_t code = self.answer(uri);
        self.log.Add(productId != nullptr ? productId : "(null)");
        return code;
    }

    std::function<int32_t(ny_policy_uri_t*)> answer = [](ny_policy_uri_t*) { return NY_OK; };
    ny_client_t* client = nullptr;
    DWORD threadId = 0;
    LineLog log;
};

class PolicyNotificationTest : public PolicySimulatorTest {
protected:
    int32_t Register(const char* productId = "PRODUCT1000", uint32_t mask = 63) {
        return Call<&ny_policy_register_notification_callback>(client, productId, mask, &Callback::Notify, &callback);
    }
    int32_t Unregister(const char* productId = "PRODUCT1000") {
        return Call<&ny_policy_unregister_notification_callback>(client, productId);
    }

    Callback callback;
};

TEST_F(PolicyNotificationTest, ComeOnAnAgentThreadWithAUriOfTheProduct) {
    callback.answer = [&](ny_policy_uri_t* uri) {
        ny_policy_bag_t* bag = nullptr;
        EXPECT_EQ(Call<&ny_policy_get>(client, uri, &bag), NY_OK);
        EXPECT_EQ(Call<&ny_policy_bag_release>(bag), NY_OK);
        EXPECT_EQ(ny_sim_live_handles(NY_SIM_POLICY_URI), 0U) << "it is borrowed";
        return 77;
    };
    ASSERT_EQ(Register(), NY_OK);
    const PolicyNotice notice("PRODUCT1000");
    EXPECT_EQ(notice.Answer(), 77);
    EXPECT_EQ(callback.client, client);
    EXPECT_EQ(callback.threadId, notice.ThreadId());
    EXPECT_NE(callback.threadId, ::GetCurrentThreadId());
    EXPECT_THAT(callback.log.Lines(), ElementsAre("PRODUCT1000"));
}

TEST_F(PolicyNotificationTest, CanNameAnotherProductOrNone) {
    ASSERT_EQ(Register(), NY_OK);
    EXPECT_EQ(PolicyNotice("PRODUCT1000", "PRODUCT2000").Answer(), NY_OK);
    EXPECT_EQ(PolicyNotice("PRODUCT1000", nullptr).Answer(), NY_OK);
    EXPECT_THAT(callback.log.Lines(), ElementsAre("PRODUCT2000", "(null)"));
}

TEST_F(PolicyNotificationTest, AreForRegisteredProductsOnly) {
    EXPECT_EQ(PolicyNotice("PRODUCT1000").Answer(), NY_SIM_NOT_REGISTERED);
    ASSERT_EQ(Register(), NY_OK);
    EXPECT_EQ(Register(), NY_ALREADY_EXISTS);
    EXPECT_EQ(PolicyNotice("product1000").Answer(), NY_SIM_NOT_REGISTERED);
    EXPECT_EQ(Unregister(), NY_OK);
    EXPECT_EQ(Unregister(), NY_INVALID_ARGUMENT);
    EXPECT_EQ(PolicyNotice("PRODUCT1000").Answer(), NY_SIM_NOT_REGISTERED);
}

TEST_F(PolicyNotificationTest, KeepTheMaskOfTheRegistration) {
    EXPECT_EQ(ny_sim_policy_mask("PRODUCT1000"), 0U);
    EXPECT_EQ(ny_sim_has_policy_callback("PRODUCT1000"), 0);
    ASSERT_EQ(Register("PRODUCT1000", 0x80000001), NY_OK);
    EXPECT_EQ(ny_sim_policy_mask("PRODUCT1000"), 0x80000001U);
    EXPECT_EQ(ny_sim_has_policy_callback("PRODUCT1000"), 1);
    EXPECT_EQ(ny_sim_policy_mask(nullptr), 0U);
    EXPECT_EQ(ny_sim_has_policy_callback(nullptr), 0);
}

TEST_F(PolicyNotificationTest, EndWithTheClient) {
    ASSERT_EQ(Register(), NY_OK);
    ReleaseClient();
    EXPECT_EQ(PolicyNotice("PRODUCT1000").Answer(), NY_SIM_NOT_REGISTERED);
}

TEST_F(PolicyNotificationTest, AreWaitedForByTheEndOfTheRegistration) {
    Checkpoint held;
    callback.answer = [&](ny_policy_uri_t*) {
        held.Stop();
        return NY_OK;
    };
    ASSERT_EQ(Register(), NY_OK);
    const PolicyNotice notice("PRODUCT1000");
    ASSERT_TRUE(held.isInside.Wait());
    EXPECT_FALSE(notice.IsAnsweredWithin(std::chrono::milliseconds(0)));
    ExpectToWaitForCallback(
        "ny_policy_unregister_notification_callback", [this] { return Unregister(); }, held.mayGoOn);
    EXPECT_EQ(notice.Answer(), NY_OK);
}

TEST_F(PolicyNotificationTest, AreTheAnswerToLocalEnforcement) {
    EXPECT_EQ(Call<&ny_policy_enforce>(client, "PRODUCT1000"), NY_SIM_NOT_REGISTERED);
    ASSERT_EQ(Register(), NY_OK);
    EXPECT_EQ(Call<&ny_policy_enforce>(client, "PRODUCT1000"), NY_OK);
    EXPECT_TRUE(callback.log.WaitFor("PRODUCT1000"));
    EXPECT_NE(callback.threadId, ::GetCurrentThreadId());
    EXPECT_EQ(Call<&ny_policy_enforce>(client, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_policy_enforce>(nullptr, "PRODUCT1000"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Unregister(), NY_OK);
}

TEST_F(PolicyNotificationTest, RefuseNull) {
    ny_sim_policy_request_t* request = nullptr;
    EXPECT_EQ(ny_sim_notify_policy(nullptr, &request), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_notify_policy("PRODUCT1000", nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_notify_policy_as(nullptr, nullptr, &request), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_policy_request_wait(nullptr, 0, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_policy_request_thread(nullptr), 0U);
    ny_sim_policy_request_release(nullptr);
    EXPECT_EQ(Register(nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Unregister(nullptr), NY_INVALID_ARGUMENT);
}

// The agent's thread is at work until it is out of the callback that ny_policy_enforce led to, which has no request.
TEST_F(PolicyNotificationTest, CanBeWaitedForWithoutARequest) {
    Event mayEnd;
    callback.answer = [&](ny_policy_uri_t*) { return mayEnd.Wait() ? NY_OK : NY_UNEXPECTED; };
    ASSERT_EQ(Register(), NY_OK);
    EXPECT_EQ(ny_sim_wait_idle(0), NY_OK);
    ASSERT_EQ(Call<&ny_policy_enforce>(client, "PRODUCT1000"), NY_OK);
    EXPECT_EQ(ny_sim_wait_idle(30), NY_SIM_TIMEOUT);
    mayEnd.Set();
    EXPECT_EQ(ny_sim_wait_idle(static_cast<uint32_t>(soon.count())), NY_OK);
    EXPECT_THAT(callback.log.Lines(), ElementsAre("PRODUCT1000"));
}

}  // namespace
