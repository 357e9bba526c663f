// Asking the agent for a notification.
#include <algorithm>
#include <atomic>

#include "policy/PolicyTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;

namespace {

class EnforceLocal : public PolicyTest {};

TEST_F(EnforceLocal, IsAnsweredByANotification) {
    Event isEnforced;
    enforcer.enforce = [&](IPolicyBag&) { isEnforced.Set(); };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(VsKitEnforceLocalPolicy(wideId), 1);
    EXPECT_TRUE(isEnforced.Wait());
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("GetLogLevel", "EnforcePolicy PRODUCT1000"));
}

TEST_F(EnforceLocal, IsPossibleInsideTheEnforcer) {
    Event isEnforcedAgain;
    std::atomic<int> calls = 0;
    enforcer.enforce = [&](IPolicyBag&) {
        if (++calls == 1) {
            EXPECT_EQ(VsKitEnforceLocalPolicy(wideId), 1);
        } else {
            isEnforcedAgain.Set();
        }
    };
    const EnforcerRegistration registration(productId, enforcer);
    EXPECT_EQ(VsKitEnforceLocalPolicy(wideId), 1);
    EXPECT_TRUE(isEnforcedAgain.Wait());
}

TEST_F(EnforceLocal, OfAProductThatTheAgentDoesNotKnowIsRefused) {
    const OnPurpose mistakes{"ID-DIFFERS", "ID-UNUSABLE"};
    EXPECT_EQ(VsKitEnforceLocalPolicy(L"PRODUCT2000"), 0);
    EXPECT_EQ(VsKitEnforceLocalPolicy(L"product1000"), 0);
    EXPECT_EQ(VsKitEnforceLocalPolicy(L""), 0);
}

TEST_F(EnforceLocal, TakesNullForTheEmptyId) {
    const OnPurpose mistakes{"ID-UNUSABLE", "NOT-ENTERED"};
    EXPECT_EQ(VsKitEnforceLocalPolicy(nullptr), 0);
    const Product nameless("", nullptr, VsMsgbusServicePolicy);
    Event isEnforced;
    enforcer.enforce = [&](IPolicyBag&) { isEnforced.Set(); };
    const EnforcerRegistration registration("", enforcer);
    EXPECT_EQ(VsKitEnforceLocalPolicy(nullptr), 1);
    EXPECT_TRUE(isEnforced.Wait());
}

TEST_F(EnforceLocal, TakesIdsOfUpTo65535Characters) {
    const OnPurpose mistakes{"ID-UNUSABLE"};
    const std::wstring longest(65535, L'x');
    const Product other(std::string(65535, 'x'), nullptr, VsMsgbusServicePolicy);
    Event isEnforced;
    enforcer.enforce = [&](IPolicyBag&) { isEnforced.Set(); };
    const EnforcerRegistration registration(std::string(65535, 'x'), enforcer);
    EXPECT_EQ(VsKitEnforceLocalPolicy(longest.c_str()), 1);
    EXPECT_TRUE(isEnforced.Wait());
    ny_sim_clear_calls();
    EXPECT_EQ(VsKitEnforceLocalPolicy((longest + L'x').c_str()), 0);
    // Only this function is looked at: the first notification may still be calling others.
    EXPECT_EQ(ny_sim_call_count("ny_policy_enforce"), 0U);
}

TEST_F(EnforceLocal, TakesIdsOfEveryAlphabet) {
    const Product other("\xC3\x9C-\xF0\x9F\x98\x80", nullptr, VsMsgbusServicePolicy);
    Event isEnforced;
    enforcer.enforce = [&](IPolicyBag&) { isEnforced.Set(); };
    const EnforcerRegistration registration("\xC3\x9C-\xF0\x9F\x98\x80", enforcer);
    EXPECT_EQ(VsKitEnforceLocalPolicy(L"\u00DC-\U0001F600"), 1);
    EXPECT_TRUE(isEnforced.Wait());
}

// Each of the agent's functions that the export calls answers an error once, but for the functions that release: their
// errors do not reach the module.
TEST_F(EnforceLocal, IsZeroForEveryErrorOfTheAgent) {
    const EnforcerRegistration registration(productId, enforcer);
    ny_sim_clear_calls();
    ASSERT_EQ(VsKitEnforceLocalPolicy(wideId), 1);
    // The calls of the export alone: those of the notification come behind ny_policy_enforce.
    Lines calls;
    for (const std::string& function : AgentCalls()) {
        calls.push_back(function);
        if (function == "ny_policy_enforce") {
            break;
        }
    }
    EXPECT_THAT(calls,
                ElementsAre("ny_variant_create_from_wstring", "ny_variant_get_string_buffer", "ny_buffer_get_string",
                            "ny_buffer_get_string", "ny_buffer_release", "ny_variant_release", "ny_policy_enforce"));
    ASSERT_TRUE(enforcer.log.WaitFor("EnforcePolicy PRODUCT1000"));
    ASSERT_TRUE(WaitForAgentCalls("ny_policy_uri_release"));
    for (const int32_t code : {77, -5, 705}) {
        for (const char* const function : {"ny_variant_create_from_wstring", "ny_variant_get_string_buffer",
                                           "ny_buffer_get_string", "ny_policy_enforce"}) {
            ASSERT_EQ(ny_sim_fail_call(function, 1, code, NY_SIM_ONCE), NY_OK);
            EXPECT_EQ(VsKitEnforceLocalPolicy(wideId), 0) << function;
        }
        ASSERT_EQ(ny_sim_fail_call("ny_buffer_get_string", 2, code, NY_SIM_ONCE), NY_OK);
        EXPECT_EQ(VsKitEnforceLocalPolicy(wideId), 0);
    }
    EXPECT_THAT(enforcer.log.Lines(), testing::SizeIs(2));
    EXPECT_EQ(ny_sim_live_handles(NY_SIM_ANY), 1U) << "the client";
}

TEST_F(EnforceLocal, IsZeroWhenNoProductHasEntered) {
    const OnPurpose mistakes{"NOT-ENTERED"};
    product.Exit();
    ny_sim_clear_calls();
    EXPECT_EQ(VsKitEnforceLocalPolicy(wideId), 0);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(EnforceLocal, IsZeroWithoutAnAgent) {
    environment.Installer().DeleteVersion();
    ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
    ny_sim_clear_calls();
    EXPECT_EQ(VsKitEnforceLocalPolicy(wideId), 0);
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(EnforceLocal, IsZeroForAProductWithoutTheServiceInItsMask) {
    const Product other("PRODUCT2000", nullptr, VsMsgbusServiceProperty);
    EXPECT_EQ(VsKitEnforceLocalPolicy(L"PRODUCT2000"), 0);
}

}  // namespace
