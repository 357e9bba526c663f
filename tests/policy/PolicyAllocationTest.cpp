// How often policies that are read ask the heap for memory of the bridge's own.
#include "msgbus/client/NyClientFixture.h"
#include "policy/CPolicyBag.h"
#include "policy/SettingCounter.h"
#include "support/CapturingSink.h"
#include "support/FailingMemory.h"

namespace {

class PolicyAllocation : public NyClientFixture {
protected:
    // The allocations of a walk over so many settings, whose texts fit into no string's own memory. The names of
    // policies and sections are short.
    size_t OfWalk(size_t settings) {
        const std::string text(100, 'x');
        std::string json = R"([{"softwareId": "PRODUCT1000", "sections": [{"name": "s", "settings": [)";
        for (size_t i = 0; i < settings; ++i) {
            json += (i == 0 ? "[\"" : ",[\"") + text + "\",\"" + text + "\"]";
        }
        EXPECT_EQ(ny_sim_policies_from_json((json + "]}]}]").c_str()), NY_OK);
        CPolicyBag bag(client->clientHandler.load(), 0, nullptr, L"PRODUCT1000");
        SettingCounter callbacks;
        const size_t before = AllocationsOfThread();
        EXPECT_TRUE(bag.EnumeratePolicies(L"PRODUCT1000", &callbacks));
        const size_t after = AllocationsOfThread();
        EXPECT_EQ(callbacks.settings, settings);
        return after - before;
    }
};

TEST_F(PolicyAllocation, IsNoneForAWalkAndItsSettings) {
    NyClientSetLogCallback(client, nullptr, nullptr);
    ASSERT_EQ(NyClientStart(client), NY_OK);
    OfWalk(1);
    EXPECT_EQ(OfWalk(10), 0U);
    EXPECT_EQ(OfWalk(100), 0U);
}

}  // namespace
