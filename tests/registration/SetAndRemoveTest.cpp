// Giving the bridge a module's interface and taking it back.
#include "registration/RegistrationTest.h"
#include "support/OnPurpose.h"

namespace {

template <typename Service>
class SetAndRemove : public RegistrationTest<Service> {};
TYPED_TEST_SUITE(SetAndRemove, AllServices, ServiceNames);

TYPED_TEST(SetAndRemove, WithoutAModuleTheAgentIsAnsweredAllTheSame) {
    this->ExpectNobodyCalled();
}

TYPED_TEST(SetAndRemove, AfterEntryTheModuleIsCalled) {
    const RegisteredModule<TypeParam> registration(productId, this->module);
    this->ExpectCalled(this->module);
}

TYPED_TEST(SetAndRemove, BeforeEntryIsInTime) {
    const RegisteredModule<TypeParam> registration(otherId, this->module);
    this->ExpectUnknownToAgent(otherId);
    const Product late(otherId, nullptr, TypeParam::mask);
    this->ExpectCalled(this->module, otherId);
}

TYPED_TEST(SetAndRemove, BeforeTheAgentAppearsIsInTime) {
    this->environment.Installer().DeleteVersion();
    ASSERT_TRUE(WatcherCalls("ny_client_handler_release"));
    const RegisteredModule<TypeParam> registration(productId, this->module);
    this->ExpectUnknownToAgent();
    this->Upgrade();
    this->ExpectCalled(this->module);
}

TYPED_TEST(SetAndRemove, CallNoAgent) {
    ny_sim_clear_calls();
    RegisteredModule<TypeParam>(productId, this->module).Remove();
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TYPED_TEST(SetAndRemove, OutliveUpgradesAndExits) {
    const RegisteredModule<TypeParam> registration(productId, this->module);
    this->Upgrade();
    this->ExpectCalled(this->module);
    this->product.Exit();
    this->ExpectUnknownToAgent();
    const Product again(productId, nullptr, TypeParam::mask);
    this->ExpectCalled(this->module);
}

TYPED_TEST(SetAndRemove, RefuseNull) {
    const OnPurpose mistakes{"SET-NULL"};
    EXPECT_FALSE(TypeParam::Set(nullptr, &this->module.object, nullptr));
    EXPECT_FALSE(TypeParam::Set(wideId, nullptr, nullptr));
    EXPECT_FALSE(TypeParam::Set(nullptr, nullptr, nullptr));
    this->ExpectNobodyCalled();
}

// The second one's record is dropped, or lost on purpose: the list of leaks that are meant names it.
TYPED_TEST(SetAndRemove, OfTheSameIdTwiceKeepTheFirst) {
    const OnPurpose mistakes{"SET-TWICE"};
    RegisteredModule<TypeParam> first(productId, this->module);
    EXPECT_TRUE(TypeParam::Set(wideId, &this->otherModule.object, nullptr));
    this->ExpectCalled(this->module);
    first.Remove();
    this->ExpectNobodyCalled();
}

TYPED_TEST(SetAndRemove, OfASecondModuleInsideTheFirstChangeNothing) {
    const OnPurpose mistakes{"SET-TWICE"};
    bool isFirst = true;
    this->module.act = [&] {
        if (std::exchange(isFirst, false)) {
            EXPECT_TRUE(TypeParam::Set(wideId, &this->otherModule.object, nullptr));
        }
    };
    const RegisteredModule<TypeParam> registration(productId, this->module);
    this->ExpectCalled(this->module);
    this->ExpectCalled(this->module);
    EXPECT_THAT(this->otherModule.object.log.Lines(), testing::IsEmpty());
}

TYPED_TEST(SetAndRemove, OfOneModuleTwiceAreUndoneByOneRemove) {
    const OnPurpose mistakes{"SET-TWICE"};
    RegisteredModule<TypeParam> first(productId, this->module);
    EXPECT_TRUE(TypeParam::Set(wideId, &this->module.object, nullptr));
    first.Remove();
    this->ExpectNobodyCalled();
}

TYPED_TEST(SetAndRemove, MakeRoomForAnotherModule) {
    RegisteredModule<TypeParam>(productId, this->module).Remove();
    this->ExpectNobodyCalled();
    const RegisteredModule<TypeParam> registration(productId, this->otherModule);
    this->ExpectCalled(this->otherModule);
    EXPECT_THAT(this->module.object.log.Lines(), testing::IsEmpty());
}

TYPED_TEST(SetAndRemove, CopyTheId) {
    wchar_t id[] = L"PRODUCT1000";
    ASSERT_TRUE(TypeParam::Set(id, &this->module.object, nullptr));
    id[0] = L'X';
    this->ExpectCalled(this->module);
    EXPECT_TRUE(TypeParam::Remove(wideId));
}

TYPED_TEST(SetAndRemove, AfterRemoveTheModuleIsCalledNoMore) {
    RegisteredModule<TypeParam> registration(productId, this->module);
    this->ExpectCalled(this->module);
    registration.Remove();
    this->ExpectNobodyCalled();
}

TYPED_TEST(SetAndRemove, AnswerTrueForTheRemovalOfAnUnknownId) {
    const OnPurpose mistakes{"REMOVE-UNKNOWN"};
    const RegisteredModule<TypeParam> registration(productId, this->module);
    for (const wchar_t* id : {L"PRODUCT9000", L"product1000", L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_TRUE(TypeParam::Remove(id));
    }
    this->ExpectCalled(this->module);
}

TYPED_TEST(SetAndRemove, TellIdsApartByCase) {
    const OnPurpose mistakes{"ID-DIFFERS"};
    const Product lower("product1000", nullptr, TypeParam::mask);
    const RegisteredModule<TypeParam> ofLower("product1000", this->otherModule);
    this->ExpectNobodyCalled();
    const RegisteredModule<TypeParam> ofUpper(productId, this->module);
    this->ExpectCalled(this->module);
    this->ExpectCalled(this->otherModule, "product1000");
}

TYPED_TEST(SetAndRemove, FindIdsOfEveryAlphabet) {
    const OnPurpose mistakes{"ID-UNUSABLE"};
    for (const char* id : {"\xC3\x9C-PRODUCT", "\xE4\xBA\xA7\xE5\x93\x81", "\xF0\x9F\x98\x80", " ", ""}) {
        const Product other(id, nullptr, TypeParam::mask);
        const RegisteredModule<TypeParam> registration(id, this->module);
        this->ExpectCalled(this->module, id);
    }
}

TYPED_TEST(SetAndRemove, OfTwoProductsKeepThemApart) {
    const Product other(otherId, nullptr, TypeParam::mask);
    const RegisteredModule<TypeParam> first(productId, this->module);
    const RegisteredModule<TypeParam> ofOther(otherId, this->otherModule);
    this->ExpectCalled(this->module);
    EXPECT_THAT(this->otherModule.object.log.Lines(), testing::IsEmpty());
    this->ExpectCalled(this->otherModule, otherId);
    EXPECT_THAT(this->module.object.log.Lines(), testing::IsEmpty());
}

TYPED_TEST(SetAndRemove, OfOneModuleServeTwoProducts) {
    const Product other(otherId, nullptr, TypeParam::mask);
    const RegisteredModule<TypeParam> first(productId, this->module);
    RegisteredModule<TypeParam> ofOther(otherId, this->module);
    this->ExpectCalled(this->module, otherId);
    ofOther.Remove();
    this->ExpectNobodyCalled(otherId);
    this->ExpectCalled(this->module);
}

// A product's module for another service is another registration, though of the same id.
TYPED_TEST(SetAndRemove, AreApartFromThoseOfOtherServices) {
    const OnPurpose mistakes{"REMOVE-UNKNOWN"};
    using Other = std::conditional_t<std::is_same_v<TypeParam, PropertyService>, PolicyService, PropertyService>;
    typename Other::Module others;
    const RegisteredModule<Other> ofOthers(productId, others);
    this->ExpectNobodyCalled();
    EXPECT_THAT(others.object.log.Lines(), testing::IsEmpty());
    const RegisteredModule<TypeParam> registration(productId, this->module);
    EXPECT_TRUE(Other::Remove(wideId));
    this->ExpectCalled(this->module);
}

}  // namespace
