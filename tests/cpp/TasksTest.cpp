// Tasks through the C++ layer.
#include <stdexcept>
#include <thread>

#include "cpp/LayerTest.h"
#include "support/AgentTasks.h"
#include "support/Event.h"
#include "support/OnPurpose.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using vsmsgbus::TaskOutcome;
using vsmsgbus::TaskResult;
using vsmsgbus::TaskRun;

namespace {

// As the contract numbers them.
constexpr int32_t goesOn = 2;
constexpr int32_t failed = 3;
constexpr int32_t done = 4;

class LayerTasks : public LayerTest {
protected:
    LayerTasks() {
        SetTasks(R"([
            {"id": "task", "product": "PRODUCT1000", "name": "The task", "type": "Scan", "settings": {
                "Scan": {"Folder": "C:\\", "Depth": "12", "Deep": "TRUE", "Shallow": "false", "Large": "300",
                         "Text": "12 files", "Empty": ""},
                "Report": {"To": "nobody"}
            }},
            {"id": "other", "product": "PRODUCT1000"}
        ])");
    }

    void TearDown() override {
        TakeReports();
        LayerTest::TearDown();
    }

    vsmsgbus::Product With(vsmsgbus::TasksHandler handler) {
        return vsmsgbus::Product(id, Logged({.tasks = std::move(handler)}));
    }

    // The next reports that the agent gets, in order, so many.
    static std::vector<std::string> Reports(size_t count) {
        // They are not taken again and again: TakeReports may lose one that comes meanwhile.
        EXPECT_EQ(ny_sim_wait_task_reports(count, static_cast<uint32_t>(soon.count())), NY_OK);
        return TakeReports();
    }

    static std::string Report() {
        const auto reports = Reports(1);
        return reports.size() == 1 ? reports.front() : std::to_string(reports.size()) + " reports";
    }
};

TEST_F(LayerTasks, AreDoneOrFailedAsTheHandlerAnswers) {
    TaskResult result = TaskResult::Done;
    const auto product = With([&](vsmsgbus::Task& task) -> TaskOutcome {
        EXPECT_EQ(task.Id(), L"task");
        EXPECT_EQ(task.TaskName(), L"The task");
        EXPECT_FALSE(task.IsToStop());
        return result;
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_EQ(Report(), "task 4");
    EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_UPDATE_STATUS), NY_OK);
    EXPECT_EQ(Report(), "task 4");
    result = TaskResult::Failed;
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_EQ(Report(), "task 3");
    EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_UPDATE_STATUS), NY_OK);
    EXPECT_EQ(Report(), "task 3");
}

TEST_F(LayerTasks, HaveSettingsWithTypes) {
    const auto product = With([](vsmsgbus::Task& task) {
        EXPECT_EQ(*task.Get<std::wstring>("Scan", "Folder"), L"C:\\");
        EXPECT_EQ(*task.Get<std::string>("Scan", "Folder"), "C:\\");
        EXPECT_EQ(*task.Get<int>(L"Scan", L"Depth"), 12);
        EXPECT_EQ(task.Get<uint64_t>("Scan", "Depth").ValueOr(1), 12U);
        EXPECT_TRUE(*task.Get<bool>("Scan", "Deep"));
        const auto shallow = task.Get<bool>("Scan", "Shallow");
        EXPECT_TRUE(static_cast<bool>(shallow));
        EXPECT_FALSE(*shallow);
        EXPECT_EQ(*task.Get<std::wstring>("Scan", "Empty"), L"");
        return TaskResult::Done;
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
}

TEST_F(LayerTasks, TellAbsentMalformedAndFoundApart) {
    const auto product = With([](vsmsgbus::Task& task) {
        const auto absent = task.Get<int>("Scan", "Nothing");
        EXPECT_TRUE(absent.IsAbsent());
        EXPECT_FALSE(static_cast<bool>(absent));
        EXPECT_EQ(absent.ValueOr(7), 7);
        EXPECT_TRUE(task.Get<int>("Nowhere", "Depth").IsAbsent());
        const auto malformed = task.Get<int>("Scan", "Text");
        EXPECT_TRUE(malformed.IsMalformed());
        EXPECT_EQ(malformed.AsText(), L"12 files");
        EXPECT_EQ(malformed.ValueOr(7), 7);
        EXPECT_TRUE(task.Get<int8_t>("Scan", "Large").IsMalformed());
        EXPECT_TRUE(task.Get<int>("Scan", "Empty").IsMalformed());
        EXPECT_TRUE(task.Get<bool>("Scan", "Depth").IsMalformed());
        const auto found = task.Get<int16_t>("Scan", "Large");
        EXPECT_FALSE(found.IsAbsent() || found.IsMalformed());
        EXPECT_EQ(*found, 300);
        return TaskResult::Done;
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
}

TEST_F(LayerTasks, ShowTheSettingsOfASection) {
    const OnPurpose mistakes{"CALLBACK-THREW"};
    const auto product = With([](vsmsgbus::Task& task) {
        EXPECT_EQ(task.CountSections(), 2U);
        EXPECT_THAT(task.Section("Report"), ElementsAre(Pair(L"To", L"nobody")));
        EXPECT_THAT(task.Section("Nowhere"), IsEmpty());
        EXPECT_FALSE(task.Walk("Nowhere", [](auto, auto) {}));
        EXPECT_FALSE(task.Walk("Scan", [](auto, auto) { throw 1; }));
        return TaskResult::Done;
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
}

TEST_F(LayerTasks, WhoseHandlerThrowsHaveFailedAndTheLogHandlerHearsOfIt) {
    const auto product = With([](vsmsgbus::Task& /*task*/) -> TaskOutcome { throw std::runtime_error("no disk"); });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_EQ(Report(), "task 3");
    EXPECT_THAT(lines.Lines(), ElementsAre("3: the handler of tasks threw: no disk"));
}

TEST_F(LayerTasks, OnAThreadOfTheirOwnLeaveTheAgentsThreadAtOnceAndAreReported) {
    Event mayEnd;
    Event isAtWork;
    const auto product = With([&](vsmsgbus::Task& /*task*/) {
        return vsmsgbus::OnOwnThread([&](const TaskRun& run) {
            EXPECT_EQ(run.Id(), L"task");
            run.Progress();
            isAtWork.Set();
            EXPECT_TRUE(mayEnd.Wait());
            return TaskResult::Done;
        });
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    ASSERT_TRUE(isAtWork.Wait());
    EXPECT_THAT(TakeReports(), testing::UnorderedElementsAre("task 2", "task 6"));
    EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_UPDATE_STATUS), NY_OK);
    EXPECT_EQ(Report(), "task " + std::to_string(goesOn));
    mayEnd.Set();
    EXPECT_EQ(Report(), "task " + std::to_string(done));
}

TEST_F(LayerTasks, OnAThreadOfTheirOwnThatThrowHaveFailed) {
    const auto product = With([&](vsmsgbus::Task& /*task*/) {
        return vsmsgbus::OnOwnThread([](const TaskRun&) -> TaskResult { throw std::runtime_error("no disk"); });
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_TRUE(lines.WaitFor("3: the handler of tasks threw: no disk"));
    EXPECT_EQ(Reports(2), (std::vector<std::string>{"task 2", "task 3"})) << "the end comes last";
}

TEST_F(LayerTasks, AreStoppedByTheirToken) {
    Event isAtWork;
    const auto product = With([&](vsmsgbus::Task& /*task*/) {
        return vsmsgbus::OnOwnThread([&](const TaskRun& run) {
            isAtWork.Set();
            EXPECT_TRUE(WaitUntil([&] { return run.IsToStop(); }));
            return TaskResult::Failed;
        });
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    ASSERT_TRUE(isAtWork.Wait());
    TakeReports();
    EXPECT_EQ(AnswerOf("other", NY_SIM_TASK_STOP), NY_OK);
    EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_STOP), NY_OK);
    EXPECT_EQ(Report(), "task 3");
}

// Also where the agent is told late that the task goes on.
TEST_F(LayerTasks, AreStoppedAndReportTheirEndBeforeTheProductLeaves) {
    Event isAtWork;
    std::atomic<bool> hasEnded = false;
    auto product = With([&](vsmsgbus::Task& /*task*/) {
        return vsmsgbus::OnOwnThread([&](const TaskRun& run) {
            isAtWork.Set();
            EXPECT_TRUE(WaitUntil([&] { return run.IsToStop(); }));
            // Longer than an Exit takes.
            Event().Wait(std::chrono::milliseconds(100));
            hasEnded = true;
            return TaskResult::Failed;
        });
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    ASSERT_TRUE(isAtWork.Wait());
    EXPECT_TRUE(product.Leave());
    EXPECT_TRUE(hasEnded);
    EXPECT_THAT(TakeReports(), ElementsAre("task 2", "task 3"));
}

TEST_F(LayerTasks, AreNotBegunOnAThreadOfTheirOwnWhileTheProductLeaves) {
    Event isInside;
    std::atomic<bool> hasRun = false;
    auto product = With([&](vsmsgbus::Task& task) {
        isInside.Set();
        EXPECT_TRUE(WaitUntil([&] { return task.IsToStop(); }));
        return vsmsgbus::OnOwnThread([&](const TaskRun&) {
            hasRun = true;
            return TaskResult::Done;
        });
    });
    const TaskRequest request("task");
    ASSERT_TRUE(isInside.Wait());
    EXPECT_TRUE(product.Leave());
    EXPECT_EQ(request.Answer(), NY_OK);
    EXPECT_FALSE(hasRun);
    EXPECT_THAT(TakeReports(), ElementsAre("task 3"));
}

// As when the work does not look at its token.
TEST_F(LayerTasks, ThatDoNotEndAreLeftBehindAfterRealFifteenSecondsAndReportNothingMore) {
    const OnPurpose mistakes{"TASK-WITHOUT-END"};
    Event isAtWork;
    auto mayEnd = std::make_shared<Event>();
    // The bridge goes on with this one.
    const vsmsgbus::Product other("PRODUCT2000", {.tasks = [](vsmsgbus::Task&) { return TaskResult::Done; }});
    auto product = With([&isAtWork, mayEnd](vsmsgbus::Task& /*task*/) {
        return vsmsgbus::OnOwnThread([&isAtWork, mayEnd](const TaskRun&) {
            isAtWork.Set();
            EXPECT_TRUE(mayEnd->Wait(std::chrono::seconds(60)));
            return TaskResult::Done;
        });
    });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    ASSERT_TRUE(isAtWork.Wait());
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(product.Leave());
    const auto taken = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(taken, std::chrono::milliseconds(14900));
    EXPECT_LT(taken, std::chrono::seconds(25)) << "not once before and once after the Exit";
    TakeReports();
    mayEnd->Set();
    EXPECT_TRUE(WaitUntil([&] { return mayEnd.use_count() == 1; })) << "the task's thread has not ended";
    EXPECT_THAT(TakeReports(), IsEmpty());
}

TEST_F(LayerTasks, MayEndTheProductFromTheirOwnThread) {
    const OnPurpose mistakes{"TASK-WITHOUT-END"};
    Event hasLeft;
    bool isAllOut = true;
    std::optional<vsmsgbus::Product> product;
    product.emplace(With([&](vsmsgbus::Task& /*task*/) {
        return vsmsgbus::OnOwnThread([&](const TaskRun&) {
            isAllOut = product->Leave();
            hasLeft.Set();
            return TaskResult::Done;
        });
    }));
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_TRUE(hasLeft.Wait());
    EXPECT_FALSE(isAllOut);
}

TEST_F(LayerTasks, MayEndTheProductFromTheAgentsThread) {
    const OnPurpose mistakes{"REMOVE-INSIDE"};
    bool isAllOut = true;
    std::optional<vsmsgbus::Product> product;
    product.emplace(With([&](vsmsgbus::Task& /*task*/) {
        isAllOut = product->Leave();
        return TaskResult::Done;
    }));
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_FALSE(isAllOut);
    EXPECT_TRUE(AgentIsLetGo());
}

TEST_F(LayerTasks, ThatAreRemovedAreForgotten) {
    const auto product = With([](vsmsgbus::Task& /*task*/) { return TaskResult::Done; });
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_REMOVE), NY_OK);
    TakeReports();
    EXPECT_EQ(AnswerOf("task", NY_SIM_TASK_UPDATE_STATUS), NY_OK);
    EXPECT_EQ(Report(), "task " + std::to_string(failed));
}

}  // namespace
