// A report that is under way while the bridge stops.
#include <thread>

#include "scheduler/TaskTest.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class StatusReportRace : public TaskTest {};

// The agent's client is not released while the agent is told with it.
TEST_F(StatusReportRace, ExitWaitsForAReportThatIsUnderWay) {
    Event isInside;
    Event mayLeave;
    LineLog order;
    const AgentHook telling("ny_scheduler_update_task_status", [&] {
        isInside.Set();
        EXPECT_TRUE(mayLeave.Wait());
    });
    const AgentHook releasing("ny_client_handler_release", [&] { order.Add("client is released"); });
    std::thread reporter([&] {
        UpdateMsgbusTaskStatus(L"task", 4);
        order.Add("reported");
    });
    ASSERT_TRUE(isInside.Wait());
    ny_sim_clear_calls();
    std::thread leaver([this] { product.Exit(); });
    EXPECT_TRUE(WaitForAgentCalls("ny_scheduler_unregister_task_callbacks"));
    EXPECT_EQ(ny_sim_wait_calls("ny_client_handler_stop", 1, 50), NY_SIM_TIMEOUT);
    mayLeave.Set();
    reporter.join();
    leaver.join();
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
    EXPECT_EQ(order.Lines().size(), 2U);
}

}  // namespace
