// A bag that no enforcer was given: closed, without a client, of another client.
#include "policy/CPolicyBag.h"

#include "VsMsgbus/LpcBuffer.h"
#include "msgbus/client/NyClientFixture.h"
#include "policy/ExpectNothingFrom.h"
#include "policy/VsMsgbusPolicyEnforcer.h"
#include "support/CapturingSink.h"
#include "support/Enforcer.h"
#include "support/UnloggedTexts.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class CPolicyBagTest : public NyClientFixture {
protected:
    void SetUp() override {
        NyClientFixture::SetUp();
        ASSERT_EQ(NyClientStart(client), NY_OK);
        ASSERT_EQ(ny_sim_policies_from_json(
                      R"([{"softwareId": "PRODUCT1000", "name": "N", "settingsObject": {"digest": "d"}}])"),
                  NY_OK);
    }
    void TearDown() override {
        EXPECT_THAT(sink.log.Lines(), IsEmpty());
        NyClientFixture::TearDown();
    }

    ny_client_t* Handler() const { return client->clientHandler.load(); }

    CapturingSink sink;
};

TEST_F(CPolicyBagTest, GivesWhatTheClientsAgentHolds) {
    CPolicyBag bag(Handler(), 7, &sink, L"PRODUCT1000");
    NotingCallbacks callbacks;
    EXPECT_TRUE(bag.EnumeratePolicies(L"PRODUCT1000", &callbacks));
    EXPECT_THAT(callbacks.lines, ElementsAre("container (null)|(null)|(null)|N"));
    EXPECT_EQ(bag.GetDigest("PRODUCT1000"), "d");
    EXPECT_EQ(bag.LogLevel(), 7);
}

TEST_F(CPolicyBagTest, WithoutAClientGivesNothing) {
    CPolicyBag bag(nullptr, 0, &sink, L"PRODUCT1000");
    ExpectNothingFrom(bag);
}

TEST_F(CPolicyBagTest, ThatIsClosedGivesNothing) {
    CPolicyBag bag(Handler(), 0, &sink, L"PRODUCT1000");
    bag.Close();
    ExpectNothingFrom(bag);
}

TEST_F(CPolicyBagTest, OfAClientThatWasStoppedGivesNothing) {
    CPolicyBag bag(Handler(), 0, &sink, L"PRODUCT1000");
    ASSERT_EQ(NyClientStop(client), NY_OK);
    ExpectNothingFrom(bag);
}

TEST_F(CPolicyBagTest, OfAnotherClientGivesNothing) {
    int somethingElse = 0;
    CPolicyBag bag(reinterpret_cast<ny_client_t*>(&somethingElse), 0, &sink, L"PRODUCT1000");
    ExpectNothingFrom(bag);
}

// The bridge composes a text after a notification, which goes to no log.
TEST_F(CPolicyBagTest, IsFollowedByATextThatIsDropped) {
    const UnloggedTexts dropped;
    VsMsgbusPolicyEnforcer service(Handler());
    Enforcer enforcer;
    EXPECT_EQ(service.on_notification(Handler(), "PRODUCT1000", nullptr), NY_OK);
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
    const EnforcerRegistration registration("PRODUCT1000", enforcer);
    EXPECT_EQ(service.on_notification(Handler(), "PRODUCT1000", nullptr), NY_OK);
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("Policy collection completed for product id PRODUCT1000"));
}

}  // namespace
