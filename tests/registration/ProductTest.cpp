// A product's registration with the agent for a service.
#include "registration/RegistrationTest.h"
#include "support/OnPurpose.h"
#include "support/Services.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

template <typename Service>
class ProductAtAgent : public RegistrationTest<Service> {
protected:
    // The registrations that the agent was asked to make and to end, in order.
    static std::vector<std::string> RegistrationCalls() {
        std::vector<std::string> calls = AgentCalls();
        std::erase_if(calls, [](const std::string& call) {
            return call != Service::registering && call != Service::unregistering;
        });
        return calls;
    }
};
TYPED_TEST_SUITE(ProductAtAgent, AllServices, ServiceNames);

TYPED_TEST(ProductAtAgent, IsRegisteredOnce) {
    VsMsgbus* instance = nullptr;
    EXPECT_TRUE(VsMsgbusEntry(productId, TypeParam::mask, nullptr, &instance));
    const Product other(otherId, nullptr, TypeParam::mask);
    EXPECT_THAT(this->RegistrationCalls(), ElementsAre(TypeParam::registering, TypeParam::registering));
    EXPECT_TRUE(TypeParam::IsKnownToAgent(productId));
}

TYPED_TEST(ProductAtAgent, IsRegisteredForTheServicesOfItsMaskAlone) {
    using Other = std::conditional_t<std::is_same_v<TypeParam, PropertyService>, PolicyService, PropertyService>;
    EXPECT_FALSE(Other::IsKnownToAgent(productId));
    Product others(otherId, nullptr, ~TypeParam::mask);
    EXPECT_FALSE(TypeParam::IsKnownToAgent(otherId));
    EXPECT_TRUE(Other::IsKnownToAgent(otherId));
    const Product both("PRODUCT3000", nullptr, TypeParam::mask | Other::mask);
    EXPECT_TRUE(TypeParam::IsKnownToAgent("PRODUCT3000"));
    EXPECT_TRUE(Other::IsKnownToAgent("PRODUCT3000"));
    others.Exit();
    EXPECT_THAT(this->RegistrationCalls(), ElementsAre(TypeParam::registering, TypeParam::registering));
}

TYPED_TEST(ProductAtAgent, IsUnregisteredWhenItLeavesAndNoOther) {
    const Product staying(otherId, nullptr, TypeParam::mask);
    ny_sim_clear_calls();
    this->product.Exit();
    EXPECT_THAT(this->RegistrationCalls(), ElementsAre(TypeParam::unregistering));
    EXPECT_FALSE(TypeParam::IsKnownToAgent(productId));
    EXPECT_TRUE(TypeParam::IsKnownToAgent(otherId));
}

TYPED_TEST(ProductAtAgent, IsRegisteredAgainAfterAnUpgrade) {
    this->Upgrade();
    EXPECT_THAT(this->RegistrationCalls(), ElementsAre(TypeParam::unregistering, TypeParam::registering));
    EXPECT_TRUE(TypeParam::IsKnownToAgent(productId));
}

// The agent answers one of these codes.
template <typename Service>
class RefusedProduct : public RegistrationTest<Service> {
protected:
    static constexpr int32_t codes[] = {77, -5, NY_INVALID_ARGUMENT, NY_FUNCTION_MISSING};

    RegisteredModule<Service> registration{productId, this->module};
};
TYPED_TEST_SUITE(RefusedProduct, AllServices, ServiceNames);

TYPED_TEST(RefusedProduct, AtEntryIsAskedForAgainAtTheNextEntry) {
    const OnPurpose mistakes{"ENTRY-FAILED"};
    for (const int32_t code : TestFixture::codes) {
        ASSERT_EQ(ny_sim_fail_call(TypeParam::registering, 1, code, NY_SIM_ONCE), NY_OK);
        const Product refused(otherId, nullptr, TypeParam::mask);
        EXPECT_FALSE(refused.IsEntered());
        EXPECT_FALSE(TypeParam::IsKnownToAgent(otherId));
        VsMsgbus* instance = nullptr;
        EXPECT_TRUE(VsMsgbusEntry(otherId, TypeParam::mask, nullptr, &instance));
        EXPECT_TRUE(TypeParam::IsKnownToAgent(otherId));
    }
    EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
}

TYPED_TEST(RefusedProduct, AtEntryIsAskedForAgainWhenTheAgentStartsAnew) {
    const OnPurpose mistakes{"ENTRY-FAILED"};
    const RegisteredModule<TypeParam> ofOther(otherId, this->otherModule);
    for (const int32_t code : TestFixture::codes) {
        ASSERT_EQ(ny_sim_fail_call(TypeParam::registering, 1, code, NY_SIM_ONCE), NY_OK);
        const Product refused(otherId, nullptr, TypeParam::mask);
        EXPECT_FALSE(refused.IsEntered());
        this->ExpectUnknownToAgent(otherId);
        this->Upgrade("5.7." + std::to_string(code), 2);
        this->ExpectCalled(this->otherModule, otherId);
    }
    EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
}

TYPED_TEST(RefusedProduct, AtExitLeavesTheOthers) {
    for (const int32_t code : TestFixture::codes) {
        Product leaving(otherId, nullptr, TypeParam::mask);
        ASSERT_EQ(ny_sim_fail_call(TypeParam::unregistering, 1, code, NY_SIM_ONCE), NY_OK);
        // This Exit takes the sink away.
        leaving.Exit();
        this->ExpectCalled(this->module);
        this->Upgrade("5.8." + std::to_string(code));
        this->ExpectUnknownToAgent(otherId);
    }
    EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
}

TYPED_TEST(RefusedProduct, AtTheLastExitIsTakenBackWithTheClient) {
    this->product.Exit();
    for (const int32_t code : TestFixture::codes) {
        Product leaving(productId, &this->sink, TypeParam::mask);
        ASSERT_EQ(ny_sim_fail_call(TypeParam::unregistering, 1, code, NY_SIM_FROM_THEN_ON), NY_OK);
        leaving.Exit();
        EXPECT_FALSE(TypeParam::IsKnownToAgent(productId));
        ny_sim_clear_faults();
        const Product again(productId, nullptr, TypeParam::mask);
        EXPECT_TRUE(again.IsEntered());
        this->ExpectCalled(this->module);
    }
    EXPECT_THAT(this->sink.log.Lines(), IsEmpty());
}

TYPED_TEST(RefusedProduct, AtAnUpgradeIsToldToTheSinkAndKeepsNoOtherProductFromTheNewAgent) {
    for (const int32_t code : TestFixture::codes) {
        ASSERT_EQ(ny_sim_fail_call(TypeParam::unregistering, 1, code, NY_SIM_ONCE), NY_OK);
        this->Upgrade("5.7." + std::to_string(code));
        this->ExpectCalled(this->module);
        EXPECT_THAT(this->sink.log.Take(), ElementsAre(NotReleasedLine(TypeParam::kind, std::to_string(code))));
    }
}

}  // namespace
