#pragma once

#include <string>

#include "VsMsgbus.h"
#include "support/AgentFunctions.h"
#include "support/AgentUpdate.h"
#include "support/BridgeTest.h"
#include "support/UpdateCallback.h"

using ISet = VsKitMsgbus::INYUpdateNotifyCallback::ISet;

inline constexpr char productId[] = "PRODUCT1000";

// The agent's result from a product that has no callback.
inline constexpr char notNotified[] = "answer 0, result 2";
inline constexpr char notAvailable[] = "answer 0, result 1";
// The agent's result from an UpdateCallback that the test has not changed.
inline constexpr char notified[] = "answer 0, result 20";
inline constexpr char got[] = "answer 0, result 30, value <>";
inline constexpr char wasSet[] = "answer 0, result 40";

// One product in the bridge for updates, the agent there, and no callback yet.
class UpdateTest : public ProductTest {
protected:
    UpdateTest() : ProductTest(VsMsgbusServiceUpdate) {}

    const std::string notCalled = "answer " + std::to_string(NY_SIM_NOT_REGISTERED);
    UpdateCallback callback;
};
