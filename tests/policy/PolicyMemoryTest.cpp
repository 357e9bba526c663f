// Memory that runs out while policies are read: whichever allocation of the bridge's own it is.
#include <atomic>

#include "VsMsgbus/LpcBuffer.h"
#include "msgbus/client/NyClientFixture.h"
#include "msgbus/lpc_buffer.h"
#include "policy/CPolicyBag.h"
#include "policy/NotingCallbacks.h"
#include "policy/SettingCounter.h"
#include "policy/VsMsgbusPolicyEnforcer.h"
#include "support/CapturingSink.h"
#include "support/Enforcer.h"
#include "support/FailingMemory.h"

namespace {

class PolicyMemory : public NyClientFixture {
protected:
    void SetUp() override {
        NyClientFixture::SetUp();
        // The test's own log needs memory too.
        NyClientSetLogCallback(client, nullptr, nullptr);
        ASSERT_EQ(NyClientStart(client), NY_OK);
        const std::string longText(lengthOfTexts, 'x');
        ASSERT_EQ(ny_sim_policies_from_json(
                      (R"([{"softwareId": "a product id that does not fit into a string", "name": ")" + longText +
                       R"(", "settingsObject": {"digest": ")" + longText + R"("}, "sections": [{"name": ")" + longText +
                       R"(", "settings": {")" + longText + R"(": ")" + longText + R"("}}]}])")
                          .c_str()),
                  NY_OK);
        // Everything of the policy group is loaded before memory runs out.
        ASSERT_EQ(Bag().GetDigest(narrowId), longText);
        SettingCounter callbacks;
        ASSERT_TRUE(Bag().EnumeratePolicies(wideId, &callbacks));
        ASSERT_TRUE(Bag().EnumerateUserPolicies(wideId, &callbacks, L"user", L"DOMAIN"));
    }

    CPolicyBag Bag() { return CPolicyBag(client->clientHandler.load(), 0, &sink, wideId); }

    // Runs `body`, which tells whether it succeeded, with the first, second... allocation failing until it succeeds.
    // Returns how often it failed.
    template <class Body>
    size_t Failures(Body&& body) {
        const size_t before = ny_sim_live_handles(NY_SIM_ANY);
        size_t failures = 0;
        for (bool hasSucceeded = false; !hasSucceeded; ++failures) {
            EXPECT_LT(failures, 200U);
            {
                const FailingMemory memory(failures, 1);
                hasSucceeded = body();
            }
            EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), before);
        }
        return failures - 1;
    }

    // More than a walk has room for without the heap, and than a string has.
    static constexpr size_t lengthOfTexts = 100;
    static constexpr char narrowId[] = "a product id that does not fit into a string";
    static constexpr wchar_t wideId[] = L"a product id that does not fit into a string";
    CapturingSink sink;
};

TEST_F(PolicyMemory, ThatRunsOutInAWalkIsTheWalksFailure) {
    CPolicyBag bag = Bag();
    SettingCounter callbacks;
    const size_t failures = Failures([&] { return bag.EnumeratePolicies(wideId, &callbacks); });
    EXPECT_GT(failures, 2U);
    EXPECT_EQ(callbacks.settings, 1U);
    EXPECT_EQ(sink.log.Lines(),
              Lines(failures,
                    "5: Failed to iterate the policy bag for product id a product id that does not fit into a "
                    "string, exception 4"));
}

TEST_F(PolicyMemory, ThatRunsOutForTheLineOfAFailureCutsItAndWritesNoEmptyOne) {
    CPolicyBag bag = Bag();
    SettingCounter callbacks;
    const std::string line =
        "5: Failed to iterate the policy bag for product id a product id that does not fit into a string, exception 66";
    size_t failed = 0;
    for (Lines taken; !testing::Value(taken, testing::ElementsAre(line)); ++failed) {
        ASSERT_LT(failed, 20U);
        ASSERT_EQ(ny_sim_fail_call("ny_policy_get", 1, 66, NY_SIM_ONCE), NY_OK);
        {
            // Not in the product's id, which is narrowed first.
            const FailingMemory memory(1 + failed, 1);
            EXPECT_FALSE(bag.EnumeratePolicies(wideId, &callbacks));
        }
        taken = sink.log.Take();
        for (const std::string& written : taken) {
            EXPECT_THAT(line, testing::StartsWith(written));
            EXPECT_NE(written, "5: ");
        }
    }
    EXPECT_GT(failed, 1U);
}

TEST_F(PolicyMemory, ThatRunsOutInAUsersWalkIsTheWalksFailure) {
    CPolicyBag bag = Bag();
    SettingCounter callbacks;
    const std::wstring user(100, L'u');
    EXPECT_GT(Failures([&] { return bag.EnumerateUserPolicies(wideId, &callbacks, user.c_str(), user.c_str()); }), 2U);
}

TEST_F(PolicyMemory, ThatRunsOutInADumpLeavesNoHalfTextAndNoOlderOne) {
    CPolicyBag bag = Bag();
    VsKitMsgbus::lpc_buffer whole{};
    bag.Dump(&whole);
    size_t cut = 0;
    Failures([&] {
        VsKitMsgbus::lpc_buffer buffer{};
        EXPECT_TRUE(VsKitMsgbus::StoreText(buffer, std::string_view("before")));
        bag.Dump(&buffer);
        const bool isWhole = buffer.length == whole.length;
        EXPECT_NE(buffer.kind, VsKitMsgbus::lpc_buffer::NarrowText);
        if (buffer.kind == VsKitMsgbus::lpc_buffer::Empty) {
            EXPECT_EQ(buffer.data, nullptr);
            EXPECT_EQ(buffer.length, 0U);
            ++cut;
        }
        buffer.Release();
        return isWhole;
    });
    EXPECT_GT(cut, 1U);
    whole.Release();
}

TEST_F(PolicyMemory, ThatRunsOutInADigestEndsIt) {
    CPolicyBag bag = Bag();
    EXPECT_GT(Failures([&] { return bag.GetDigest(narrowId).size() == lengthOfTexts; }), 0U);
}

TEST_F(PolicyMemory, ThatRunsOutInADigestsTextLeavesNoOlderOne) {
    CPolicyBag bag = Bag();
    EXPECT_GT(Failures([&] {
                  VsKitMsgbus::lpc_buffer buffer;
                  EXPECT_TRUE(VsKitMsgbus::StoreText(buffer, std::wstring_view(L"before")));
                  const bool isWhole = bag.GetDigestText(narrowId, &buffer);
                  EXPECT_EQ(buffer.kind, VsKitMsgbus::lpc_buffer::NarrowText);
                  EXPECT_EQ(buffer.length, isWhole ? lengthOfTexts : 0);
                  buffer.Release();
                  return isWhole;
              }),
              0U);
}

TEST_F(PolicyMemory, ThatRunsOutForARegistrationIsAnsweredWithFalse) {
    Enforcer enforcer;
    EXPECT_GT(Failures([&] { return VsKitMsgbusSetEnforcePolicy(wideId, &enforcer, nullptr); }), 1U);
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId));
}

TEST_F(PolicyMemory, ThatRunsOutForLocalEnforcementIsAnsweredWithZero) {
    VsMsgbusPolicyEnforcer service(client->clientHandler.load());
    service.RegisterProduct(narrowId);
    ny_sim_clear_calls();
    // The notification is over when its uri is given back.
    EXPECT_GT(
        Failures([] { return VsKitEnforceLocalPolicy(wideId) == 1 && WaitForAgentCalls("ny_policy_uri_release"); }),
        0U);
    service.UnregisterAll();
}

}  // namespace
