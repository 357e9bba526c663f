// The executor without a bridge around it: what the agent could give it that the simulated agent never gives, and
// registrations that the agent refuses.
#include "agent/ny_agent.h"
#include "msgbus/client/AgentUse.h"
#include "msgbus/instance/ServiceFactory.h"
#include "scheduler/AgentTask.h"
#include "scheduler/CTaskBag.h"
#include "scheduler/TaskEnforcerTable.h"
#include "scheduler/VsMsgbusTaskExecutor.h"
#include "support/FailingMemory.h"
#include "support/TaskEnforcer.h"
#include "support/UnloggedTexts.h"
#include "values/ValuesTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class TaskExecutor : public ValuesTest {
protected:
    // Opens a client that nobody releases.
    static void Open(ny_client_t* opened) {
        const auto session = std::make_shared<AgentSession>();
        session->Own(opened, nullptr);
        OpenAgent(session);
    }

    // The client is no handle of the agent's: none of these tests lets it get there.
    ny_client_t* const client = reinterpret_cast<ny_client_t*>(this);
    VsMsgbusTaskExecutor executor{client};
    UnloggedTexts dropped;
};

TEST_F(TaskExecutor, IsTheServiceOfItsKind) {
    const VsMsgbusIoPointer made = MakeService(IoKindTask, client);
    ASSERT_NE(made, nullptr);
    EXPECT_TRUE(IsServiceOfKind(IoKindTask, *made));
    EXPECT_FALSE(IsServiceOfKind(IoKindProperty, *made));
}

TEST_F(TaskExecutor, WithoutAnAgentIsRefusedWith705) {
    EXPECT_EQ(CodeOf([&] { executor.RegisterProduct("PRODUCT1000"); }), NY_FUNCTION_MISSING);
    EXPECT_EQ(CodeOf([&] { executor.UnregisterProduct("PRODUCT1000"); }), -1);
}

TEST_F(TaskExecutor, ReportsNothingWithoutAStartedClient) {
    executor.UpdateStatus("task", 4);
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

TEST_F(TaskExecutor, ReportsNothingThroughAnotherClientThanItsOwn) {
    ny_client_t* const other = reinterpret_cast<ny_client_t*>(&executor);
    Open(other);
    executor.UpdateStatus("task", 4);
    CloseAgent(other);
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

TEST_F(TaskExecutor, WithoutAnAgentFailsToReportWith705) {
    Open(client);
    executor.UpdateStatus("task", 4);
    CloseAgent(client);
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("Failed to update the task status, error  [705]"));
}

TEST_F(TaskExecutor, RaisesTheCodeOfATaskThatIsNoneOrHasNothing) {
    environment.InstallAgent();
    ny_task empty{nullptr};
    const ny_task_methods_t noMethods{};
    ny_task withoutAccessors{&noMethods};
    const std::pair<ny_task_t*, int32_t> cases[] = {
        {nullptr, NY_INVALID_ARGUMENT}, {&empty, 2}, {&withoutAccessors, 2}};
    for (const auto& [task, code] : cases) {
        EXPECT_EQ(CodeOf([&, broken = task] { executor.on_execute(client, "PRODUCT1000", "", broken); }), code);
        EXPECT_EQ(CodeOf([&, broken = task] { executor.on_stop(client, "PRODUCT1000", "", broken); }), code);
        EXPECT_EQ(CodeOf([&, broken = task] { executor.on_remove(client, "PRODUCT1000", "", broken); }), code);
        EXPECT_EQ(CodeOf([&, broken = task] { executor.on_update_status(client, "PRODUCT1000", "", broken); }), code);
    }
    EXPECT_THAT(dropped.log.Lines(), IsEmpty());
}

class TaskBag : public ValuesTest {};

TEST_F(TaskBag, KeepsTheContextOfItsRegistration) {
    EXPECT_EQ(CTaskBag(nullptr, this).Context(), this);
}

TEST_F(TaskBag, OfNoTaskGivesNothing) {
    UnloggedTexts dropped;
    SettingVisitor visitor;
    VsKitMsgbus::lpc_buffer name;
    environment.InstallAgent();
    CTaskBag bag(nullptr, nullptr);
    EXPECT_EQ(bag.CountEntries(), 0U);
    EXPECT_EQ(bag.IterateSettings(&visitor, L"Scan"), 0);
    EXPECT_FALSE(bag.GetTaskName(&name));
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("Failed to iterate the task bag , exception 1",
                                                 "Failed to get the task name , exception 1"));
}

int32_t GiveNull(ny_task_t* /*task*/, const char** text) {
    *text = nullptr;
    return NY_OK;
}

TEST_F(TaskBag, OfATaskWithoutTextsHasEmptyOnes) {
    environment.InstallAgent();
    const ny_task_methods_t methods{&GiveNull, &GiveNull, nullptr, nullptr, nullptr};
    ny_task task{&methods};
    EXPECT_EQ(TaskId(&task), "");
    VsKitMsgbus::lpc_buffer name;
    EXPECT_TRUE(CTaskBag(&task, nullptr).GetTaskName(&name));
    EXPECT_EQ(name.kind, VsKitMsgbus::lpc_buffer::WideText);
    EXPECT_EQ(name.length, 0U);
    ASSERT_NE(name.data, nullptr);
    EXPECT_EQ(*static_cast<wchar_t*>(name.data), L'\0');
    name.Release();
}

TEST_F(TaskBag, WithoutAnAgentGivesNothing) {
    UnloggedTexts dropped;
    int32_t number = 77;
    CTaskBag bag(nullptr, nullptr);
    EXPECT_FALSE(bag.GetInteger(L"Scan", L"Depth", &number));
    EXPECT_EQ(number, 0);
    EXPECT_THAT(dropped.log.Lines(), ElementsAre("Failed to get the value for setting name Depth, exception 705"));
}

TEST(TaskEnforcerMemory, ThatIsMissingIsAnsweredFalseAndNothingIsRegistered) {
    TaskEnforcer enforcer;
    size_t failed = 0;
    for (bool isSet = false; !isSet; ++failed) {
        ASSERT_LT(failed, 100U);
        const FailingMemory memory(failed, 1);
        isSet =
            VsKitMsgbusSetTaskEnforcer(L"a product id that is too long to be kept without memory", &enforcer, nullptr);
        if (!isSet) {
            VsKitMsgbusFreeTaskCookie(L"a product id that is too long to be kept without memory", nullptr);
        }
    }
    EXPECT_GE(failed, 3U);
    EXPECT_THAT(enforcer.log.Lines(), IsEmpty());
    EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(L"a product id that is too long to be kept without memory"));
}

}  // namespace
