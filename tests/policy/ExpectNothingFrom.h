#pragma once

#include "VsMsgbus/LpcBuffer.h"
#include "policy/NotingCallbacks.h"
#include "support/AgentCalls.h"

// Expects that the bag gives nothing, and makes no call to the agent for it.
inline void ExpectNothingFrom(VsKitMsgbus::INYEnforcePolicy::IPolicyBag& bag) {
    NotingCallbacks callbacks;
    ny_sim_clear_calls();
    EXPECT_FALSE(bag.EnumeratePolicies(L"PRODUCT1000", &callbacks));
    EXPECT_FALSE(bag.EnumerateUserPolicies(L"PRODUCT1000", &callbacks, L"user", L"DOMAIN"));
    EXPECT_EQ(bag.GetDigest("PRODUCT1000"), "");
    VsKitMsgbus::lpc_buffer digests;
    EXPECT_FALSE(bag.GetDigestText("PRODUCT1000", &digests));
    EXPECT_EQ(VsKitMsgbus::TakeNarrowText(digests), "");
    EXPECT_EQ(bag.Digest("PRODUCT1000"), "");
    VsKitMsgbus::lpc_buffer dump{};
    bag.Dump(&dump);
    EXPECT_EQ(dump.kind, VsKitMsgbus::lpc_buffer::WideText);
    EXPECT_EQ(dump.length, 0U);
    dump.Release();
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
    EXPECT_TRUE(callbacks.lines.empty());
}
