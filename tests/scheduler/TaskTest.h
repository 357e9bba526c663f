#pragma once

#include <string>
#include <vector>

#include "VsMsgbus.h"
#include "support/AgentTasks.h"
#include "support/BridgeTest.h"
#include "support/TaskEnforcer.h"

inline constexpr char productId[] = "PRODUCT1000";
inline constexpr wchar_t wideProductId[] = L"PRODUCT1000";

inline constexpr ny_sim_task_operation allTaskOperations[] = {NY_SIM_TASK_EXECUTE, NY_SIM_TASK_STOP, NY_SIM_TASK_REMOVE,
                                                              NY_SIM_TASK_UPDATE_STATUS};

class AgentWithTasksTest : public InstalledAgentTest {
protected:
    AgentWithTasksTest() {
        SetTasks(R"([
            {"id": "task", "product": "PRODUCT1000", "name": "The task", "type": "Scan", "settings": {
                "Scan": {"Folder": "C:\\", "Depth": "12", "Deep": "TRUE"},
                "Report": {"To": "nobody"}
            }},
            {"id": "second", "product": "PRODUCT1000"},
            {"id": "other", "product": "PRODUCT2000"}
        ])");
    }

    void TearDown() override {
        BridgeTest::TearDown();
        EXPECT_EQ(ny_sim_lent_tasks(), 0U);
    }
};

// One product in the bridge, the agent there, and no enforcer yet.
class TaskTest : public AgentWithTasksTest {
protected:
    // The products leave before the machine that they are on goes.
    void TearDown() override {
        product.Exit();
        EXPECT_THAT(sink.log.Lines(), testing::IsEmpty());
        AgentWithTasksTest::TearDown();
    }

    // Has the module execute "task" with this body. The body's answer is a status, such as 4, Succeeded.
    void WithBag(TaskEnforcer::Operation body) {
        enforcer.execute = std::move(body);
        const TaskEnforcerRegistration registration(productId, enforcer);
        EXPECT_EQ(AnswerOf("task"), NY_OK);
    }
    // The same for a task with these settings.
    void WithSettings(const std::string& settings, TaskEnforcer::Operation body) {
        SetTasks(R"([{"id": "task", "product": "PRODUCT1000", "settings": )" + settings + "}]");
        WithBag(std::move(body));
    }

    TaskEnforcer enforcer;
    Product product{productId, &sink, VsMsgbusServiceTask};
};
