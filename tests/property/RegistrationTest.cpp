// Giving the bridge a collector and taking it back.
#include "property/PropertyTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CollectorRegistration : public PropertyTest {};

TEST_F(CollectorRegistration, IsNotNeededForARequestToSucceed) {
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
}

TEST_F(CollectorRegistration, AfterEntryIsAsked) {
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
}

TEST_F(CollectorRegistration, BeforeEntryIsAsked) {
    const Registration registration("PRODUCT2000", collector);
    const Product late("PRODUCT2000");
    EXPECT_EQ(Ask("PRODUCT2000"), answered);
}

TEST_F(CollectorRegistration, CallsNoAgent) {
    ny_sim_clear_calls();
    Registration registration(productId, collector);
    registration.Remove();
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(CollectorRegistration, BeforeTheAgentAppearsIsAskedOnceItDid) {
    environment.Installer().DeleteVersion();
    ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
    const Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), notAsked);
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(Ask(productId), answered);
}

TEST_F(CollectorRegistration, OutlivesUpgradesAndExits) {
    const Registration registration(productId, collector);
    UpgradeAndWait("5.7.1");
    EXPECT_EQ(Ask(productId), answered);
    product.Exit();
    const Product again(productId);
    EXPECT_EQ(Ask(productId), answered);
}

TEST_F(CollectorRegistration, RefusesNull) {
    EXPECT_FALSE(VsKitMsgbusSetCollectProperties(nullptr, &collector, &modulesSink));
    EXPECT_FALSE(VsKitMsgbusSetCollectProperties(L"PRODUCT1000", nullptr, &modulesSink));
    EXPECT_FALSE(VsKitMsgbusSetCollectProperties(nullptr, nullptr, nullptr));
    EXPECT_EQ(Ask(productId), nothing);
}

TEST_F(CollectorRegistration, OfTheSameIdTwiceKeepsTheFirst) {
    Collector second;
    const Registration first(productId, collector);
    EXPECT_TRUE(VsKitMsgbusSetCollectProperties(L"PRODUCT1000", &second, nullptr));
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_THAT(second.log.Lines(), IsEmpty());
}

TEST_F(CollectorRegistration, OfTheSameIdTwiceIsUndoneByOneRemove) {
    Registration first(productId, collector);
    EXPECT_TRUE(VsKitMsgbusSetCollectProperties(L"PRODUCT1000", &collector, nullptr));
    first.Remove();
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(collector.log.Lines(), IsEmpty());
}

TEST_F(CollectorRegistration, CanBeReplacedAfterRemove) {
    Collector second;
    Registration(productId, collector).Remove();
    const Registration registration(productId, second);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(collector.log.Lines(), IsEmpty());
    EXPECT_THAT(second.log.Lines(), ElementsAre("CollectProperties(true)", "GetLogLevel"));
}

TEST_F(CollectorRegistration, CopiesTheId) {
    wchar_t id[] = L"PRODUCT1000";
    ASSERT_TRUE(VsKitMsgbusSetCollectProperties(id, &collector, nullptr));
    id[0] = L'X';
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"PRODUCT1000"));
}

TEST_F(CollectorRegistration, RemovedIsAskedNoMore) {
    Registration registration(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    registration.Remove();
    collector.log.Take();
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(collector.log.Lines(), IsEmpty());
}

TEST_F(CollectorRegistration, RemovedThatNeverWasIsTrue) {
    const Registration registration(productId, collector);
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"PRODUCT9000"));
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"product1000"));
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L""));
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(nullptr));
    EXPECT_EQ(Ask(productId), answered);
}

TEST_F(CollectorRegistration, OfIdsThatDifferInCaseAreTwo) {
    Collector lowerCollector;
    const Product lower("product1000");
    const Registration ofLower("product1000", lowerCollector);
    EXPECT_EQ(Ask(productId), nothing);
    EXPECT_THAT(lowerCollector.log.Lines(), IsEmpty());
    const Registration ofUpper(productId, collector);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_EQ(Ask("product1000"), nothing);
}

TEST_F(CollectorRegistration, FindsIdsOfEveryAlphabet) {
    for (const char* id : {"\xC3\x9C-PRODUCT", "\xE4\xBA\xA7\xE5\x93\x81", "\xF0\x9F\x98\x80", " ", ""}) {
        const Product other(id);
        const Registration registration(id, collector);
        EXPECT_EQ(Ask(id), answered) << id;
    }
}

TEST_F(CollectorRegistration, OfTwoProductsAsksTheRightOne) {
    const Product other("PRODUCT2000");
    Collector others([](ISet& set) { set.SetProperty(L"others", L"own", L"2"); });
    const Registration first(productId, collector);
    const Registration second("PRODUCT2000", others);
    EXPECT_EQ(Ask(productId), answered);
    EXPECT_THAT(Ask("PRODUCT2000"), ElementsAre("answer 0", "others:own=2"));
}

TEST_F(CollectorRegistration, OfOneCollectorServesTwoProducts) {
    const Product other("PRODUCT2000");
    const Registration first(productId, collector);
    Registration second("PRODUCT2000", collector);
    EXPECT_EQ(Ask("PRODUCT2000"), answered);
    second.Remove();
    EXPECT_EQ(Ask("PRODUCT2000"), nothing);
    EXPECT_EQ(Ask(productId), answered);
}

}  // namespace
