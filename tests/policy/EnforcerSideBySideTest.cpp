// Notifications that come at the same time.
#include <algorithm>
#include <atomic>
#include <memory>

#include "policy/PolicyTest.h"

namespace {

class PoliciesSideBySide : public PolicyTest {};

TEST_F(PoliciesSideBySide, OfOneProductAreEnforcedOneAfterTheOther) {
    std::atomic<int> inside = 0;
    std::atomic<int> most = 0;
    Event isInside;
    Event mayLeave;
    // An enforcement begins with the question for the level.
    enforcer.getLogLevel = [&] {
        most = std::max(most.load(), ++inside);
        return 0;
    };
    enforcer.enforce = [&](IPolicyBag& bag) {
        isInside.Set();
        EXPECT_TRUE(mayLeave.Wait());
        EXPECT_EQ(Dump(bag), "");
        --inside;
    };
    const EnforcerRegistration registration(productId, enforcer);
    std::vector<std::unique_ptr<PolicyNotice>> notices;
    for (int i = 0; i < 5; ++i) {
        notices.push_back(std::make_unique<PolicyNotice>(productId));
    }
    ASSERT_TRUE(isInside.Wait());
    // Long enough for the others to come in, if they could.
    EXPECT_FALSE(notices.back()->IsAnsweredWithin(std::chrono::milliseconds(30)));
    mayLeave.Set();
    for (const auto& notice : notices) {
        EXPECT_EQ(notice->Answer(), NY_OK);
    }
    EXPECT_EQ(most, 1);
    EXPECT_EQ(enforcer.log.Lines().size(), 10U);
}

// Each enforcer leaves only when the other one has come.
TEST_F(PoliciesSideBySide, OfTwoProductsAreEnforcedTogether) {
    const Product other("PRODUCT2000", nullptr, VsMsgbusServicePolicy);
    Event firstIsInside;
    Event secondIsInside;
    enforcer.enforce = [&](IPolicyBag& bag) {
        firstIsInside.Set();
        EXPECT_TRUE(secondIsInside.Wait());
        EXPECT_EQ(Dump(bag), "");
    };
    Enforcer others([&](IPolicyBag& bag) {
        secondIsInside.Set();
        EXPECT_TRUE(firstIsInside.Wait());
        EXPECT_EQ(Dump(bag), "");
    });
    const EnforcerRegistration ofFirst(productId, enforcer);
    const EnforcerRegistration ofSecond("PRODUCT2000", others);
    const PolicyNotice first(productId);
    const PolicyNotice second("PRODUCT2000");
    EXPECT_EQ(first.Answer(), NY_OK);
    EXPECT_EQ(second.Answer(), NY_OK);
}

// While one enforcer is busy, everybody else can register, enter and leave.
TEST_F(PoliciesSideBySide, ABusyEnforcerIsNoReasonForOthersToWait) {
    Event isInside;
    Event mayLeave;
    enforcer.enforce = [&](IPolicyBag&) {
        isInside.Set();
        EXPECT_TRUE(mayLeave.Wait());
    };
    const EnforcerRegistration registration(productId, enforcer);
    const PolicyNotice busy(productId);
    ASSERT_TRUE(isInside.Wait());
    Enforcer others;
    Product other("PRODUCT2000", nullptr, VsMsgbusServicePolicy);
    EnforcerRegistration ofOther("PRODUCT2000", others);
    EXPECT_EQ(PolicyNotice("PRODUCT2000").Answer(), NY_OK);
    ofOther.Remove();
    other.Exit();
    EXPECT_FALSE(busy.IsAnsweredWithin(std::chrono::milliseconds(0)));
    mayLeave.Set();
    EXPECT_EQ(busy.Answer(), NY_OK);
}

}  // namespace
