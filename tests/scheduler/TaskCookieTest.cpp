// Cookies, which the enforcer of a product frees.
#include "scheduler/TaskTest.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TaskCookie : public TaskTest {
protected:
    void* const cookie = reinterpret_cast<void*>(uintptr_t{4711});
};

TEST_F(TaskCookie, IsFreedByTheEnforcerOfItsProduct) {
    TaskEnforcer others;
    const TaskEnforcerRegistration registration(productId, enforcer);
    const TaskEnforcerRegistration ofOthers("PRODUCT2000", others);
    ny_sim_clear_calls();
    VsKitMsgbusFreeTaskCookie(wideProductId, cookie);
    VsKitMsgbusFreeTaskCookie(wideProductId, nullptr);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("free cookie 4711", "free cookie 0"));
    EXPECT_THAT(others.log.Lines(), IsEmpty());
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(TaskCookie, OfAnUnknownIdIsNotFreed) {
    const TaskEnforcerRegistration registration(productId, enforcer);
    for (const wchar_t* id : {L"PRODUCT9000", L"product1000", L"", static_cast<const wchar_t*>(nullptr)}) {
        VsKitMsgbusFreeTaskCookie(id, cookie);
    }
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
}

TEST_F(TaskCookie, IsFreedAlsoOutsideOfTheBridge) {
    product.Exit();
    const TaskEnforcerRegistration registration(productId, enforcer);
    VsKitMsgbusFreeTaskCookie(wideProductId, cookie);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("free cookie 4711"));
}

TEST_F(TaskCookie, IsFreedWithNoLockHeld) {
    const OnPurpose mistakes{"CALLBACK-THREW", "REMOVE-INSIDE", "REMOVE-UNKNOWN"};
    const TaskEnforcerRegistration registration(productId, enforcer);
    enforcer.freeCookie = [] {
        EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(wideProductId));
        throw 42;
    };
    VsKitMsgbusFreeTaskCookie(wideProductId, cookie);
    VsKitMsgbusFreeTaskCookie(wideProductId, cookie);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("free cookie 4711"));
}

}  // namespace
