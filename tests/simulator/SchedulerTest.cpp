// The simulated agent's scheduler: registrations, requests and reports.
#include <atomic>
#include <functional>
#include <thread>

#include "simulator/SimulatorTest.h"
#include "support/AgentTasks.h"
#include "support/Checkpoint.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char tasks[] = R"([
    {"id": "scan", "product": "PRODUCT1000", "type": "Scan"},
    {"id": "plain", "product": "PRODUCT1000"},
    {"id": "other", "product": "PRODUCT2000", "type": "Scan"}
])";

// A product's task callbacks: note how they are called, and do what the test wants.
class Handler {
public:
    explicit Handler(std::string nameInLog) : name(std::move(nameInLog)) {}

    template <int which>
    static int32_t Call(ny_client_t* client, const char* productId, const char* taskType, ny_task_t* task, void* data) {
        Handler& self = *static_cast<Handler*>(data);
        constexpr const char* names[] = {"execute", "stop", "remove", "update_status"};
        self.client = client;
        self.threadId = ::GetCurrentThreadId();
        const char* id = nullptr;
        EXPECT_EQ(task->methods->get_id(task, &id), NY_OK);
        self.log.Add(self.name + " " + names[which] + " " + productId + " " + (taskType ? taskType : "(null)") + " " +
                     id);
        return self.answer();
    }

    const ny_task_callbacks_t callbacks = {&Call<0>, &Call<1>, &Call<2>, &Call<3>};
    const std::string name;
    std::function<int32_t()> answer = [] { return NY_OK; };
    LineLog log;
    std::atomic<ny_client_t*> client = nullptr;
    std::atomic<DWORD> threadId = 0;
};

class SchedulerTest : public SimulatedClientTest {
protected:
    void SetUp() override {
        SimulatedClientTest::SetUp();
        SetTasks(tasks);
    }

    void TearDown() override {
        ReleaseClient();
        EXPECT_EQ(ny_sim_lent_tasks(), 0U);
        SimulatedClientTest::TearDown();
    }

    int32_t Register(Handler& registered, const char* taskType = nullptr, const char* productId = "PRODUCT1000") {
        return Call<&ny_scheduler_register_task_callbacks>(client, productId, taskType, &registered.callbacks,
                                                           &registered);
    }
    int32_t Unregister(const char* taskType = nullptr, const char* productId = "PRODUCT1000") {
        return Call<&ny_scheduler_unregister_task_callbacks>(client, productId, taskType);
    }

    Handler handler{"all"};
};

TEST_F(SchedulerTest, CallsTheOperationThatIsAskedForOnAnAgentThread) {
    ASSERT_EQ(Register(handler), NY_OK);
    handler.answer = [] { return 77; };
    for (const auto operation :
         {NY_SIM_TASK_EXECUTE, NY_SIM_TASK_STOP, NY_SIM_TASK_REMOVE, NY_SIM_TASK_UPDATE_STATUS}) {
        const TaskRequest request("scan", operation);
        EXPECT_EQ(request.Answer(), 77);
        EXPECT_NE(request.ThreadId(), ::GetCurrentThreadId());
        EXPECT_EQ(request.ThreadId(), handler.threadId);
        EXPECT_EQ(handler.client, client);
    }
    EXPECT_THAT(handler.log.Lines(),
                ElementsAre("all execute PRODUCT1000 Scan scan", "all stop PRODUCT1000 Scan scan",
                            "all remove PRODUCT1000 Scan scan", "all update_status PRODUCT1000 Scan scan"));
}

TEST_F(SchedulerTest, PrefersTheCallbacksOfTheTasksTypeToThoseOfAll) {
    Handler ofScans("scans");
    ASSERT_EQ(Register(ofScans, "Scan"), NY_OK);
    EXPECT_EQ(AnswerOf("plain"), NY_SIM_NOT_REGISTERED);
    ASSERT_EQ(Register(handler), NY_OK);
    EXPECT_EQ(AnswerOf("scan"), NY_OK);
    EXPECT_EQ(AnswerOf("plain"), NY_OK);
    EXPECT_THAT(ofScans.log.Lines(), ElementsAre("scans execute PRODUCT1000 Scan scan"));
    EXPECT_THAT(handler.log.Lines(), ElementsAre("all execute PRODUCT1000 (null) plain"));
    EXPECT_EQ(AnswerOf("other"), NY_SIM_NOT_REGISTERED);
}

TEST_F(SchedulerTest, RefusesUnknownTasksOperationsAndNonsense) {
    ASSERT_EQ(Register(handler), NY_OK);
    ny_sim_task_request_t* request = nullptr;
    EXPECT_EQ(AnswerOf("nobody's"), NY_INVALID_ARGUMENT);
    EXPECT_EQ(AnswerOf("scan", static_cast<ny_sim_task_operation>(4)), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_request_task(nullptr, NY_SIM_TASK_EXECUTE, &request), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_request_task("scan", NY_SIM_TASK_EXECUTE, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_task_request_wait(nullptr, 0, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_task_request_thread(nullptr), 0U);
    ny_sim_task_request_release(nullptr);
    EXPECT_EQ(request, nullptr);
    EXPECT_EQ(Register(handler, nullptr, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_scheduler_register_task_callbacks>(client, "P", nullptr, nullptr, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_THAT(handler.log.Lines(), IsEmpty());
}

TEST_F(SchedulerTest, RegistersOncePerProductAndType) {
    EXPECT_EQ(Unregister(), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Register(handler), NY_OK);
    EXPECT_EQ(Register(handler), NY_ALREADY_EXISTS);
    EXPECT_EQ(Register(handler, "Scan"), NY_OK);
    EXPECT_EQ(ny_sim_has_task_callbacks("PRODUCT1000", nullptr), 1);
    EXPECT_EQ(ny_sim_has_task_callbacks("PRODUCT1000", "Scan"), 1);
    EXPECT_EQ(ny_sim_has_task_callbacks("PRODUCT1000", "scan"), 0);
    EXPECT_EQ(ny_sim_has_task_callbacks("PRODUCT2000", nullptr), 0);
    EXPECT_EQ(ny_sim_has_task_callbacks(nullptr, nullptr), 0);
    EXPECT_EQ(Unregister(), NY_OK);
    EXPECT_EQ(ny_sim_has_task_callbacks("PRODUCT1000", nullptr), 0);
    EXPECT_EQ(ny_sim_has_task_callbacks("PRODUCT1000", "Scan"), 1);
    ReleaseClient();
    EXPECT_EQ(ny_sim_has_task_callbacks("PRODUCT1000", "Scan"), 0);
}

TEST_F(SchedulerTest, UnregisteringWaitsForACallbackOnAnotherThread) {
    Checkpoint held;
    handler.answer = [&] {
        held.Stop();
        return NY_OK;
    };
    ASSERT_EQ(Register(handler), NY_OK);
    const TaskRequest request("scan");
    ASSERT_TRUE(held.isInside.Wait());
    EXPECT_FALSE(request.IsAnsweredWithin(std::chrono::milliseconds(0)));
    EXPECT_EQ(ny_sim_lent_tasks(), 1U);
    ExpectToWaitForCallback(
        "ny_scheduler_unregister_task_callbacks", [this] { return Unregister(); }, held.mayGoOn);
    EXPECT_EQ(request.Answer(), NY_OK);
}

TEST_F(SchedulerTest, RunsRequestsSideBySide) {
    Event first;
    Event second;
    std::atomic<int> calls = 0;
    handler.answer = [&] {
        const bool isFirst = calls++ == 0;
        (isFirst ? first : second).Set();
        EXPECT_TRUE((isFirst ? second : first).Wait());
        return NY_OK;
    };
    ASSERT_EQ(Register(handler), NY_OK);
    const TaskRequest one("scan");
    const TaskRequest other("scan", NY_SIM_TASK_STOP);
    EXPECT_EQ(one.Answer(), NY_OK);
    EXPECT_EQ(other.Answer(), NY_OK);
}

TEST_F(SchedulerTest, KeepsReportsInTheirOrderWithTheirTime) {
    ny_sim_task_report_t report{};
    EXPECT_EQ(ny_sim_last_task_report("scan", &report), NY_INVALID_ARGUMENT);
    EXPECT_EQ(Call<&ny_scheduler_update_task_status>(client, "scan", 2), NY_OK);
    EXPECT_EQ(Call<&ny_scheduler_update_task_status>(client, "unknown", -7), NY_OK);
    EXPECT_EQ(Call<&ny_scheduler_update_task_status>(client, "scan", 4), NY_OK);
    EXPECT_EQ(Call<&ny_scheduler_update_task_status>(client, nullptr, 4), NY_INVALID_ARGUMENT);
    ny_sim_task_report_t first{};
    ASSERT_EQ(ny_sim_get_task_report(0, &first), NY_OK);
    ASSERT_EQ(ny_sim_last_task_report("scan", &report), NY_OK);
    EXPECT_EQ(report.status, 4);
    EXPECT_EQ(report.threadId, ::GetCurrentThreadId());
    EXPECT_GE(report.time, first.time);
    constexpr uint64_t year2020 = 1577836800000;
    EXPECT_GT(first.time, year2020);
    EXPECT_EQ(ny_sim_task_report_count(), 3U);
    EXPECT_EQ(ny_sim_get_task_report(3, &report), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_get_task_report(0, nullptr), NY_INVALID_ARGUMENT);
    EXPECT_THAT(TakeReports(), ElementsAre("scan 2", "unknown -7", "scan 4"));
    EXPECT_EQ(ny_sim_task_report_count(), 0U);
}

TEST_F(SchedulerTest, LetsTheNextReportBeWaitedFor) {
    EXPECT_EQ(ny_sim_wait_task_reports(0, 0), NY_OK);
    EXPECT_EQ(ny_sim_wait_task_reports(1, 0), NY_SIM_TIMEOUT);
    std::thread reporting([&] { EXPECT_EQ(Call<&ny_scheduler_update_task_status>(client, "scan", 4), NY_OK); });
    EXPECT_EQ(ny_sim_wait_task_reports(1, static_cast<uint32_t>(soon.count())), NY_OK);
    reporting.join();
    EXPECT_THAT(TakeReports(), ElementsAre("scan 4"));
}

TEST_F(SchedulerTest, RefusesReportsOfDeadClients) {
    ny_client_t* const dead = client;
    ReleaseClient();
    EXPECT_EQ(Call<&ny_scheduler_update_task_status>(dead, "scan", 4), NY_INVALID_ARGUMENT);
    EXPECT_EQ(ny_sim_misuse_count(), 1U);
    EXPECT_THAT(TakeReports(), IsEmpty());
    ny_sim_reset();
}

TEST_F(SchedulerTest, ForgetsTasksAndReportsAtAReset) {
    ASSERT_EQ(Register(handler), NY_OK);
    EXPECT_EQ(Call<&ny_scheduler_update_task_status>(client, "scan", 4), NY_OK);
    ny_sim_reset();
    EXPECT_EQ(AnswerOf("scan"), NY_INVALID_ARGUMENT);
    EXPECT_THAT(TakeReports(), IsEmpty());
}

TEST_F(SchedulerTest, TakesNoTasksFromNonsenseAndKeepsThoseItHas) {
    ASSERT_EQ(Register(handler), NY_OK);
    for (const char* json : {
             "",
             "{}",
             "[1]",
             "[{}]",
             R"([{"id": "a"}])",
             R"([{"product": "P"}])",
             R"([{"id": 1, "product": "P"}])",
             R"([{"id": "a", "product": "P", "nmae": "misspelt"}])",
             R"([{"id": "a", "product": "P", "settings": []}])",
             R"([{"id": "a", "product": "P", "accessors": {"get_ip": "absent"}}])",
             R"([{"id": "a", "product": "P", "accessors": {"get_id": "gone"}}])",
             R"([{"id": "a", "product": "P"}, {"id": "a", "product": "Q"}])",
             static_cast<const char*>(nullptr),
         }) {
        EXPECT_EQ(ny_sim_tasks_from_json(json), NY_INVALID_ARGUMENT) << (json != nullptr ? json : "null");
    }
    EXPECT_EQ(AnswerOf("scan"), NY_OK);
    SetTasks("[]");
    EXPECT_EQ(AnswerOf("scan"), NY_INVALID_ARGUMENT);
}

}  // namespace
