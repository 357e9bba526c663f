// Giving the bridge an update callback and taking it back.
#include "updater/UpdateTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CallbackRegistration : public UpdateTest {};

TEST_F(CallbackRegistration, BeforeEntryIsCalled) {
    const UpdateRegistration registration("PRODUCT2000", callback);
    const Product late("PRODUCT2000", nullptr, VsMsgbusServiceUpdate);
    EXPECT_EQ(Update(NotifyCall("PRODUCT2000")), notified);
}

TEST_F(CallbackRegistration, CallsNoAgent) {
    ny_sim_clear_calls();
    UpdateRegistration registration(productId, callback);
    registration.Remove();
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(CallbackRegistration, BeforeTheAgentAppearsIsCalledOnceItDid) {
    environment.Installer().DeleteVersion();
    ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(NotifyCall()), notCalled);
    UpgradeAgent("5.7.1");
    EXPECT_EQ(Update(NotifyCall()), notified);
}

TEST_F(CallbackRegistration, OutlivesUpgradesAndExits) {
    const UpdateRegistration registration(productId, callback);
    UpgradeAgent("5.7.1");
    EXPECT_EQ(Update(NotifyCall()), notified);
    product.Exit();
    EXPECT_EQ(Update(NotifyCall()), notCalled);
    const Product again(productId, nullptr, VsMsgbusServiceUpdate);
    EXPECT_EQ(Update(NotifyCall()), notified);
}

TEST_F(CallbackRegistration, RefusesNull) {
    EXPECT_FALSE(VsKitMsgbusSetUpdateNotify(nullptr, &callback, this));
    EXPECT_FALSE(VsKitMsgbusSetUpdateNotify(L"PRODUCT1000", nullptr, this));
    EXPECT_FALSE(VsKitMsgbusSetUpdateNotify(nullptr, nullptr, nullptr));
    EXPECT_EQ(Update(NotifyCall()), notNotified);
}

TEST_F(CallbackRegistration, TakesAnyContext) {
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(L"PRODUCT1000", &callback, reinterpret_cast<void*>(uintptr_t{1})));
    EXPECT_EQ(Update(NotifyCall()), notified);
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(L"PRODUCT1000"));
}

TEST_F(CallbackRegistration, OfTheSameIdTwiceKeepsTheFirst) {
    UpdateCallback second;
    const UpdateRegistration first(productId, callback);
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(L"PRODUCT1000", &second, nullptr));
    EXPECT_EQ(Update(NotifyCall()), notified);
    EXPECT_EQ(Update(SetCall()), wasSet);
    EXPECT_EQ(Update(GetCall()), got);
    EXPECT_EQ(callback.log.Lines().size(), 3U);
    EXPECT_THAT(second.log.Lines(), IsEmpty());
}

TEST_F(CallbackRegistration, OfTheSameIdTwiceIsUndoneByOneRemove) {
    UpdateRegistration first(productId, callback);
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(L"PRODUCT1000", &callback, nullptr));
    first.Remove();
    EXPECT_EQ(Update(NotifyCall()), notNotified);
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
}

TEST_F(CallbackRegistration, CanBeReplacedAfterRemove) {
    UpdateCallback second;
    UpdateRegistration(productId, callback).Remove();
    const UpdateRegistration registration(productId, second);
    EXPECT_EQ(Update(GetCall()), got);
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
    EXPECT_THAT(second.log.Lines(), ElementsAre("GetProductInfo(text 2, a key)"));
}

TEST_F(CallbackRegistration, CopiesTheId) {
    wchar_t id[] = L"PRODUCT1000";
    ASSERT_TRUE(VsKitMsgbusSetUpdateNotify(id, &callback, nullptr));
    id[0] = L'X';
    EXPECT_EQ(Update(NotifyCall()), notified);
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(L"PRODUCT1000"));
}

TEST_F(CallbackRegistration, RemovedIsCalledNoMore) {
    UpdateRegistration registration(productId, callback);
    registration.Remove();
    EXPECT_EQ(Update(NotifyCall()), notNotified);
    EXPECT_EQ(Update(SetCall()), notAvailable);
    EXPECT_EQ(Update(GetCall()), notAvailable);
    EXPECT_THAT(callback.log.Lines(), IsEmpty());
}

TEST_F(CallbackRegistration, RemovedThatNeverWasIsTrue) {
    const UpdateRegistration registration(productId, callback);
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(L"PRODUCT9000"));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(L"product1000"));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(L""));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(nullptr));
    EXPECT_EQ(Update(NotifyCall()), notified);
}

TEST_F(CallbackRegistration, OfIdsThatDifferInCaseAreTwo) {
    const Product lower("product1000", nullptr, VsMsgbusServiceUpdate);
    const UpdateRegistration registration(productId, callback);
    EXPECT_EQ(Update(NotifyCall("product1000")), notNotified);
    EXPECT_EQ(Update(NotifyCall()), notified);
}

TEST_F(CallbackRegistration, FindsIdsOfEveryAlphabet) {
    for (const char* id : {"\xC3\x9C-PRODUCT", "\xE4\xBA\xA7\xE5\x93\x81", "\xF0\x9F\x98\x80", " ", ""}) {
        const Product other(id, nullptr, VsMsgbusServiceUpdate);
        const UpdateRegistration registration(id, callback);
        EXPECT_EQ(Update(NotifyCall(id)), notified) << id;
    }
}

// A product's collector is another registration, though of the same id.
TEST_F(CallbackRegistration, IsApartFromThoseOfOtherServices) {
    const Registration ofCollector(productId, collector);
    EXPECT_EQ(Update(NotifyCall()), notNotified);
    const UpdateRegistration registration(productId, callback);
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(L"PRODUCT1000"));
    EXPECT_EQ(Update(NotifyCall()), notified);
}

class UpdateService : public UpdateTest {};

TEST_F(UpdateService, IsForProductsThatNameIt) {
    EXPECT_EQ(ny_sim_has_updater("PRODUCT1000"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT1000"), 0);
    const Product other("PRODUCT2000", nullptr, VsMsgbusServiceProperty);
    EXPECT_EQ(ny_sim_has_updater("PRODUCT2000"), 0);
    const Product both("PRODUCT3000", nullptr, VsMsgbusServiceProperty | VsMsgbusServiceUpdate);
    EXPECT_EQ(ny_sim_has_updater("PRODUCT3000"), 1);
    EXPECT_EQ(ny_sim_has_property_provider("PRODUCT3000"), 1);
}

TEST_F(UpdateService, RegistersAProductOnce) {
    ny_sim_clear_calls();
    VsMsgbus* instance = nullptr;
    EXPECT_TRUE(VsMsgbusEntry(productId, VsMsgbusServiceUpdate, nullptr, &instance));
    EXPECT_EQ(ny_sim_call_count(registerUpdater), 0U);
}

TEST_F(UpdateService, UnregistersAProductThatLeavesAndNoOther) {
    Product leaving("PRODUCT2000", nullptr, VsMsgbusServiceUpdate);
    Product unnamed("PRODUCT3000", nullptr, VsMsgbusServiceProperty);
    ny_sim_clear_calls();
    leaving.Exit();
    unnamed.Exit();
    EXPECT_EQ(ny_sim_call_count(unregisterUpdater), 1U);
    EXPECT_EQ(ny_sim_has_updater("PRODUCT1000"), 1);
    EXPECT_EQ(ny_sim_has_updater("PRODUCT2000"), 0);
}

}  // namespace
