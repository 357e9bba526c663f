// Giving the bridge a task enforcer and taking it back; cookies; the product's registration with the agent.
#include "scheduler/TaskTest.h"
#include "support/Services.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TaskRegistration : public TaskTest {};

TEST_F(TaskRegistration, IsNotNeededForATaskToBeAnswered) {
    for (const auto operation : allTaskOperations) {
        EXPECT_EQ(AnswerOf("task", operation), NY_OK);
    }
    EXPECT_THAT(TakeReports(), ElementsAre("task 2", "task 3"));
}

TEST_F(TaskRegistration, BeforeEntryIsGivenTasks) {
    const TaskEnforcerRegistration registration("PRODUCT2000", enforcer);
    EXPECT_EQ(AnswerOf("other"), NY_SIM_NOT_REGISTERED);
    const Product other("PRODUCT2000", nullptr, VsMsgbusServiceTask);
    EXPECT_EQ(AnswerOf("other"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("execute other"));
}

TEST_F(TaskRegistration, OutlivesUpgradesAndExits) {
    const TaskEnforcerRegistration registration(productId, enforcer);
    UpgradeAndWaitForTasks();
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    product.Exit();
    EXPECT_EQ(AnswerOf("task"), NY_SIM_NOT_REGISTERED);
    const Product again(productId, nullptr, VsMsgbusServiceTask);
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("execute task", "execute task"));
}

TEST_F(TaskRegistration, CallsNoAgent) {
    ny_sim_clear_calls();
    TaskEnforcerRegistration(productId, enforcer).Remove();
    EXPECT_EQ(ny_sim_call_count(nullptr), 0U);
}

TEST_F(TaskRegistration, RefusesNull) {
    EXPECT_FALSE(VsKitMsgbusSetTaskEnforcer(nullptr, &enforcer, this));
    EXPECT_FALSE(VsKitMsgbusSetTaskEnforcer(wideProductId, nullptr, this));
    EXPECT_FALSE(VsKitMsgbusSetTaskEnforcer(nullptr, nullptr, nullptr));
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
}

// The second one's record is lost on purpose: the list of leaks that are meant names it.
TEST_F(TaskRegistration, OfTheSameIdTwiceKeepsTheFirst) {
    TaskEnforcer second;
    TaskEnforcerRegistration first(productId, enforcer);
    EXPECT_TRUE(VsKitMsgbusSetTaskEnforcer(wideProductId, &second, this));
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(enforcer.log.Take(), ElementsAre("execute task"));
    first.Remove();
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
    EXPECT_THAT(second.log.Lines(), IsEmpty());
}

TEST_F(TaskRegistration, CanBeReplacedAfterRemove) {
    TaskEnforcer second;
    TaskEnforcerRegistration(productId, enforcer).Remove();
    const TaskEnforcerRegistration registration(productId, second);
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
    EXPECT_THAT(second.log.Lines(), ElementsAre("execute task"));
}

TEST_F(TaskRegistration, CopiesTheId) {
    wchar_t id[] = L"PRODUCT1000";
    ASSERT_TRUE(VsKitMsgbusSetTaskEnforcer(id, &enforcer, nullptr));
    id[0] = L'X';
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(wideProductId));
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("execute task"));
}

TEST_F(TaskRegistration, RemovedThatNeverWasIsTrue) {
    const TaskEnforcerRegistration registration(productId, enforcer);
    for (const wchar_t* id : {L"PRODUCT9000", L"product1000", L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(id));
    }
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("execute task"));
}

TEST_F(TaskRegistration, FindsIdsOfEveryAlphabet) {
    for (const char* id : {"\xC3\x9C-PRODUCT", "\xE4\xBA\xA7\xE5\x93\x81", "\xF0\x9F\x98\x80", " ", ""}) {
        SetTasks(std::string(R"([{"id": ")") + "\xC3\x9C" + R"(", "product": ")" + id + R"("}])");
        const Product other(id, nullptr, VsMsgbusServiceTask);
        const TaskEnforcerRegistration registration(id, enforcer);
        EXPECT_EQ(AnswerOf("\xC3\x9C"), NY_OK) << id;
        EXPECT_THAT(enforcer.log.Take(), ElementsAre("execute \xC3\x9C")) << id;
    }
}

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
    const TaskEnforcerRegistration registration(productId, enforcer);
    enforcer.freeCookie = [] {
        EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(wideProductId));
        throw 42;
    };
    VsKitMsgbusFreeTaskCookie(wideProductId, cookie);
    VsKitMsgbusFreeTaskCookie(wideProductId, cookie);
    EXPECT_THAT(enforcer.log.Lines(), ElementsAre("free cookie 4711"));
}

class TaskProduct : public AgentWithTasksTest {};

TEST_F(TaskProduct, IsRegisteredOnceForEveryTypeOfTask) {
    const Product product(productId, nullptr, VsMsgbusServiceTask);
    VsMsgbus* instance = nullptr;
    EXPECT_TRUE(VsMsgbusEntry(productId, VsMsgbusServiceTask, nullptr, &instance));
    EXPECT_EQ(ny_sim_call_count("ny_scheduler_register_task_callbacks"), 1U);
    EXPECT_EQ(ny_sim_has_task_callbacks(productId, nullptr), 1);
}

TEST_F(TaskProduct, IsRegisteredOnlyWhenItsMaskNamesTasks) {
    Product product(productId, nullptr, VsMsgbusServiceProperty);
    EXPECT_EQ(ny_sim_has_task_callbacks(productId, nullptr), 0);
    product.Exit();
    EXPECT_EQ(ny_sim_call_count("ny_scheduler_unregister_task_callbacks"), 0U);
}

TEST_F(TaskProduct, IsUnregisteredWhenItLeaves) {
    const Product staying("PRODUCT2000", nullptr, VsMsgbusServiceTask);
    Product product(productId, nullptr, VsMsgbusServiceTask);
    product.Exit();
    EXPECT_EQ(ny_sim_call_count("ny_scheduler_unregister_task_callbacks"), 1U);
    EXPECT_EQ(ny_sim_has_task_callbacks(productId, nullptr), 0);
    EXPECT_EQ(ny_sim_has_task_callbacks("PRODUCT2000", nullptr), 1);
}

TEST_F(TaskProduct, ThatTheAgentRefusesIsAskedForAgainWhenTheAgentStartsAnew) {
    const Product first("PRODUCT2000", nullptr, VsMsgbusServiceTask);
    ASSERT_EQ(ny_sim_fail_call("ny_scheduler_register_task_callbacks", 1, 77, NY_SIM_ONCE), NY_OK);
    const Product product(productId, nullptr, VsMsgbusServiceTask);
    EXPECT_FALSE(product.IsEntered());
    EXPECT_EQ(ny_sim_has_task_callbacks(productId, nullptr), 0);
    UpgradeAndWaitForTasks(2);
    EXPECT_EQ(ny_sim_has_task_callbacks(productId, nullptr), 1);
}

TEST_F(TaskProduct, ThatTheAgentKeepsRegisteredLeavesSilently) {
    Product product(productId, &sink, VsMsgbusServiceTask);
    ASSERT_EQ(ny_sim_fail_call("ny_scheduler_unregister_task_callbacks", 1, 77, NY_SIM_FROM_THEN_ON), NY_OK);
    product.Exit();
    EXPECT_THAT(sink.log.Lines(), IsEmpty());
    EXPECT_EQ(ny_sim_has_task_callbacks(productId, nullptr), 0);
}

}  // namespace
