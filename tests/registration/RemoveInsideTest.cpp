// Taking a module's interface back while the module is being called.
#include "registration/RegistrationTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <typename Service>
class RemoveInside : public RegistrationTest<Service> {
protected:
    // Asks until a request is answered at once, which it is when the module is out of the table.
    void WaitUntilRemovedFromTable() {
        std::vector<std::unique_ptr<typename Service::Request>> requests;
        do {
            requests.push_back(std::make_unique<typename Service::Request>(productId));
        } while (!requests.back()->IsAnsweredWithin(std::chrono::milliseconds(100)));
        // Requests that came before the removal wait for the module, and may end now.
        this->held.mayGoOn.Set();
    }

    const OnPurpose usualMistakes{"REMOVE-INSIDE", "REMOVE-UNKNOWN", "CALLBACK-THREW"};
};
TYPED_TEST_SUITE(RemoveInside, AllServices, ServiceNames);

TYPED_TEST(RemoveInside, ReturnsAtOnceAndTheCallIsTheLastOfTheModule) {
    this->module.act = [] { EXPECT_TRUE(TypeParam::Remove(wideId)); };
    const RegisteredModule<TypeParam> registration(productId, this->module);
    EXPECT_EQ(this->OutcomeOf(), TypeParam::called);
    this->module.object.log.Take();
    this->ExpectNobodyCalled();
}

TYPED_TEST(RemoveInside, MakesRoomForAnother) {
    this->module.act = [this] {
        EXPECT_TRUE(TypeParam::Remove(wideId));
        EXPECT_TRUE(TypeParam::Set(wideId, &this->otherModule.object, nullptr));
    };
    const RegisteredModule<TypeParam> registration(productId, this->module);
    EXPECT_EQ(this->OutcomeOf(), TypeParam::called);
    EXPECT_THAT(this->otherModule.object.log.Lines(), IsEmpty());
    this->module.object.log.Take();
    this->ExpectCalled(this->otherModule);
    EXPECT_THAT(this->module.object.log.Lines(), IsEmpty());
}

TYPED_TEST(RemoveInside, AndThenAnExceptionIsAFailureLikeAnyOther) {
    this->module.act = [] {
        EXPECT_TRUE(TypeParam::Remove(wideId));
        throw 42;
    };
    const RegisteredModule<TypeParam> registration(productId, this->module);
    EXPECT_EQ(this->OutcomeOf(), TypeParam::failed);
    this->module.object.log.Take();
    this->ExpectNobodyCalled();
}

TYPED_TEST(RemoveInside, OfAnIdleModuleInsideAnotherReturns) {
    const RegisteredModule<TypeParam> ofIdle(otherId, this->otherModule);
    this->module.act = [] { EXPECT_TRUE(TypeParam::Remove(wideOtherId)); };
    const RegisteredModule<TypeParam> registration(productId, this->module);
    this->ExpectCalled(this->module);
    const Product other(otherId, nullptr, TypeParam::mask);
    this->ExpectNobodyCalled(otherId);
}

TYPED_TEST(RemoveInside, OnAnotherThreadReturnsWhenTheModuleIsOut) {
    this->Block();
    RegisteredModule<TypeParam> registration(productId, this->module);
    const typename TypeParam::Request request(productId);
    ASSERT_TRUE(this->held.isInside.Wait());
    Event isRemoved;
    std::thread remover([&] {
        registration.Remove();
        this->order.Add("removed");
        isRemoved.Set();
    });
    EXPECT_FALSE(isRemoved.Wait(std::chrono::milliseconds(50)));
    this->held.mayGoOn.Set();
    remover.join();
    EXPECT_EQ(TypeParam::OutcomeOf(request), TypeParam::called);
    EXPECT_THAT(this->order.Lines(), ElementsAre("module is out", "removed"));
}

TYPED_TEST(RemoveInside, TwiceOnTwoThreadsIsWaitedForByTheOneThatTookIt) {
    this->Block();
    const RegisteredModule<TypeParam> registration(productId, this->module);
    const typename TypeParam::Request request(productId);
    ASSERT_TRUE(this->held.isInside.Wait());
    std::thread first([] { EXPECT_TRUE(TypeParam::Remove(wideId)); });
    this->WaitUntilRemovedFromTable();
    first.join();
    EXPECT_THAT(this->order.Lines(), testing::Contains("module is out"));
    EXPECT_TRUE(TypeParam::Remove(wideId));
}

template <typename Service>
class RemoveInsideGetLogLevel : public RemoveInside<Service> {};
TYPED_TEST_SUITE(RemoveInsideGetLogLevel, ServicesWithLogLevel, ServiceNames);

TYPED_TEST(RemoveInsideGetLogLevel, IsTheLastOfTheModule) {
    this->module.object.getLogLevel = [] {
        EXPECT_TRUE(TypeParam::Remove(wideId));
        return 4;
    };
    const RegisteredModule<TypeParam> registration(productId, this->module);
    EXPECT_EQ(this->OutcomeOf(), TypeParam::called);
    EXPECT_EQ(this->module.object.log.Take(), this->NotesUntilLogLevel());
    this->ExpectNobodyCalled();
}

template <typename Service>
class RemoveInsideWithTurns : public RemoveInside<Service> {};
TYPED_TEST_SUITE(RemoveInsideWithTurns, ServicesWithTurns, ServiceNames);

TYPED_TEST(RemoveInsideWithTurns, LetsNoRequestInThatWaitedForItsTurn) {
    this->Block();
    RegisteredModule<TypeParam> registration(productId, this->module);
    const typename TypeParam::Request first(productId);
    ASSERT_TRUE(this->held.isInside.Wait());
    const typename TypeParam::Request second(productId);
    std::vector<std::string> notesAtReturn;
    std::thread remover([&] {
        registration.Remove();
        notesAtReturn = this->module.object.log.Lines();
    });
    this->WaitUntilRemovedFromTable();
    remover.join();
    EXPECT_EQ(first.Answer(), NY_OK);
    EXPECT_EQ(second.Answer(), NY_OK);
    EXPECT_EQ(this->module.object.log.Lines(), notesAtReturn);
    EXPECT_THAT(this->order.Lines(), ElementsAre("module is out"));
}

}  // namespace
