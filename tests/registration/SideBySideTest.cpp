// Requests, registrations and entries at the same time.
#include "registration/RegistrationTest.h"

namespace {

template <typename Service>
class SideBySide : public RegistrationTest<Service> {};
TYPED_TEST_SUITE(SideBySide, AllServices, ServiceNames);

// Each module leaves only when the other one has come.
TYPED_TEST(SideBySide, TheModulesOfTwoProductsAreCalled) {
    const Product other(otherId, nullptr, TypeParam::mask);
    Event firstIsInside;
    Event secondIsInside;
    this->module.act = [&] {
        firstIsInside.Set();
        EXPECT_TRUE(secondIsInside.Wait());
    };
    this->otherModule.act = [&] {
        secondIsInside.Set();
        EXPECT_TRUE(firstIsInside.Wait());
    };
    const RegisteredModule<TypeParam> ofFirst(productId, this->module);
    const RegisteredModule<TypeParam> ofSecond(otherId, this->otherModule);
    const typename TypeParam::Request first(productId);
    const typename TypeParam::Request second(otherId);
    EXPECT_EQ(first.Answer(), NY_OK);
    EXPECT_EQ(second.Answer(), NY_OK);
}

// While one module is busy, everybody else can register, enter and leave.
TYPED_TEST(SideBySide, ABusyModuleIsNoReasonForOthersToWait) {
    this->Block();
    const RegisteredModule<TypeParam> registration(productId, this->module);
    const typename TypeParam::Request busy(productId);
    ASSERT_TRUE(this->held.isInside.Wait());
    Product other(otherId, nullptr, TypeParam::mask);
    RegisteredModule<TypeParam> ofOther(otherId, this->otherModule);
    this->ExpectCalled(this->otherModule, otherId);
    ofOther.Remove();
    other.Exit();
    EXPECT_FALSE(busy.IsAnsweredWithin(std::chrono::milliseconds(0)));
    this->held.mayGoOn.Set();
    EXPECT_EQ(busy.Answer(), NY_OK);
}

template <typename Service>
class SideBySideWithTurns : public RegistrationTest<Service> {};
TYPED_TEST_SUITE(SideBySideWithTurns, ServicesWithTurns, ServiceNames);

TYPED_TEST(SideBySideWithTurns, TwoRequestsForOneProductNeverAre) {
    this->Block();
    const RegisteredModule<TypeParam> registration(productId, this->module);
    std::vector<std::unique_ptr<typename TypeParam::Request>> requests;
    for (int i = 0; i < 5; ++i) {
        requests.push_back(std::make_unique<typename TypeParam::Request>(productId));
    }
    ASSERT_TRUE(this->held.isInside.Wait());
    // Long enough for the others to come in, if they could.
    EXPECT_FALSE(requests.back()->IsAnsweredWithin(std::chrono::milliseconds(30)));
    this->held.mayGoOn.Set();
    for (const auto& request : requests) {
        EXPECT_EQ(TypeParam::OutcomeOf(*request), TypeParam::called);
    }
    EXPECT_EQ(this->module.visits.Most(), 1);
    EXPECT_EQ(this->order.Lines().size(), requests.size());
}

// Eight threads: three that register and remove modules, four that have the agent ask for them, one with a product that
// comes and goes. Meanwhile the agent is upgraded.
template <typename Service>
class Crowd : public RegistrationTest<Service> {
protected:
    static constexpr int rounds = 400;
    static constexpr int productCount = 3;
    using Request = typename Service::Request;

    struct OneOfThem {
        explicit OneOfThem(const std::string& id) : product(id, nullptr, Service::mask) {
            module.act = [this] {
                EXPECT_TRUE(isRegistered) << "called after Remove";
                wasCalled.Set();
            };
        }

        Product product;
        std::atomic<bool> isRegistered = false;
        Event wasCalled;
        typename Service::Module module;
    };

    static void RegisterAndRemove(OneOfThem& one) {
        for (int i = 0; i < rounds; ++i) {
            one.isRegistered = true;
            RegisteredModule<Service> registration(one.product.Id(), one.module);
            // In every other round a request finds it registered.
            if (i % 2 == 0) {
                Request(one.product.Id()).Answer();
            }
            registration.Remove();
            one.isRegistered = false;
        }
    }

    void AskAll() {
        for (int i = 0; i < rounds; ++i) {
            const Request request(them[static_cast<size_t>(i % productCount)]->product.Id());
            EXPECT_THAT(Service::OutcomeOf(request), testing::AnyOf(Service::called, Service::notCalled,
                                                                    "answer " + std::to_string(NY_SIM_NOT_REGISTERED)));
        }
    }

    static void EnterAndLeave() {
        for (int i = 0; i < rounds; ++i) {
            const Product guest("PRODUCT9000", nullptr, Service::mask);
            EXPECT_TRUE(guest.IsEntered());
        }
    }

    std::vector<std::unique_ptr<OneOfThem>> them;
};
TYPED_TEST_SUITE(Crowd, ServicesWithTurns, ServiceNames);

TYPED_TEST(Crowd, OfThreadsAgreesOnWhoIsRegistered) {
    for (int i = 0; i < TestFixture::productCount; ++i) {
        this->them.push_back(std::make_unique<typename TestFixture::OneOfThem>("MODULE" + std::to_string(i)));
    }
    std::vector<std::thread> threads;
    for (const auto& one : this->them) {
        threads.emplace_back([&] { TestFixture::RegisterAndRemove(*one); });
    }
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([this] { this->AskAll(); });
    }
    threads.emplace_back(TestFixture::EnterAndLeave);
    for (const auto& one : this->them) {
        EXPECT_TRUE(one->wasCalled.Wait());
    }
    for (const char* version : {"5.7.1", "5.7.2", "5.7.3"}) {
        this->Upgrade(version, 1 + TestFixture::productCount);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    // Nothing is under way any more once everybody has left.
    this->product.Exit();
    for (const auto& one : this->them) {
        one->product.Exit();
    }
    for (const auto& one : this->them) {
        one->module.object.log.Take();
        const Product again(one->product.Id(), nullptr, TypeParam::mask);
        this->ExpectNobodyCalled(one->product.Id());
        EXPECT_THAT(one->module.object.log.Lines(), testing::IsEmpty());
    }
}

}  // namespace
