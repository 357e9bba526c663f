// A report that is under way while the bridge stops.
#include <thread>

#include "scheduler/TaskTest.h"
#include "support/Checkpoint.h"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class StatusReportRace : public TaskTest {};

// Exit must not stop the agent's client while a report uses it. The order of the two lines at the end is left open: the
// reporter adds its line after the report has ended.
TEST_F(StatusReportRace, ExitWaitsForAReportThatIsUnderWay) {
    LineLog done;
    HeldAgentCall telling("ny_scheduler_update_task_status");
    const AgentHook releasing("ny_client_handler_release", [&] { done.Add("client is released"); });
    std::thread reporter([&] {
        UpdateMsgbusTaskStatus(L"task", 4);
        done.Add("reported");
    });
    ASSERT_TRUE(telling.isInside.Wait());
    ny_sim_clear_calls();
    std::thread leaver([this] { product.Exit(); });
    EXPECT_TRUE(WaitForAgentCalls("ny_scheduler_unregister_task_callbacks"));
    EXPECT_EQ(ny_sim_wait_calls("ny_client_handler_stop", 1, 50), NY_SIM_TIMEOUT);
    telling.mayGoOn.Set();
    reporter.join();
    leaver.join();
    EXPECT_THAT(TakeReports(), ElementsAre("task 4"));
    EXPECT_THAT(done.Lines(), testing::UnorderedElementsAre("client is released", "reported"));
}

}  // namespace
