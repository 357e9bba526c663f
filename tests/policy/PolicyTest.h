#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "VsMsgbus.h"
#include "policy/NotingCallbacks.h"
#include "support/BridgeTest.h"
#include "support/Enforcer.h"
#include "support/PolicyNotice.h"

using ICallbacks = IPolicyBag::ICallbacks;

inline constexpr char productId[] = "PRODUCT1000";
inline constexpr wchar_t wideId[] = L"PRODUCT1000";
inline constexpr char registerPolicies[] = "ny_policy_register_notification_callback";
inline constexpr char iterationLine[] = "5: Failed to iterate the policy bag for product id PRODUCT1000, exception ";

// Gives the agent these policies in the place of all others, see ny_sim_policy.h.
inline void HoldPolicies(const std::string& json) {
    ASSERT_EQ(ny_sim_policies_from_json(json.c_str()), NY_OK);
}

// For tests with the codes that an agent answers.
inline std::string NameOfCode(const testing::TestParamInfo<int32_t>& code) {
    return code.param < 0 ? "minus" + std::to_string(-code.param) : std::to_string(code.param);
}

// One product in the bridge for policies, the agent there, and no enforcer yet.
class PolicyTest : public ProductTest {
protected:
    PolicyTest() : ProductTest(VsMsgbusServicePolicy) {}

    // Has the agent notify the product, whose enforcer does this; gives the answer.
    int32_t Enforce(std::function<void(IPolicyBag&)> whatToDo) {
        enforcer.enforce = std::move(whatToDo);
        const EnforcerRegistration registration(productId, enforcer, &modulesSink);
        return PolicyNotice(productId).Answer();
    }

    // The lines of a walk over the machine's policies that succeeds.
    Lines Walk(std::function<bool(const std::string& line)> answer = {}) {
        NotingCallbacks callbacks;
        callbacks.answer = std::move(answer);
        EXPECT_EQ(Enforce([&](IPolicyBag& bag) { EXPECT_TRUE(bag.EnumeratePolicies(wideId, &callbacks)); }), NY_OK);
        return callbacks.lines;
    }

    // The dump's text.
    static std::string Dump(IPolicyBag& bag) {
        VsKitMsgbus::lpc_buffer buffer{};
        bag.Dump(&buffer);
        EXPECT_EQ(buffer.kind, VsKitMsgbus::lpc_buffer::WideText);
        EXPECT_NE(buffer.data, nullptr);
        const std::wstring text(static_cast<const wchar_t*>(buffer.data));
        EXPECT_EQ(buffer.length, text.size());
        buffer.Release();
        return Narrow(text);
    }

    Enforcer enforcer;
};
