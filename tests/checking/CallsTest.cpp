// The checking bridge's findings about buffers, statuses, answers, times and exceptions. A test that says Named expects
// the mistake to be found, one that says Noted expects a note. One that says Right expects no finding, which TearDown
// checks.
#include <optional>
#include <stdexcept>
#include <vector>

#include "VsMsgbus.h"
#include "checking/CheckedTest.h"
#include "support/AgentTasks.h"
#include "support/TaskEnforcer.h"

namespace {

using VsKitMsgbus::lpc_buffer;

class CheckedCalls : public CheckedTest {
protected:
    CheckedCalls() { EXPECT_EQ(ny_sim_set_all_information(R"({"GUID": "{0}", "Version": "5.7.0"})"), NY_OK); }
    ~CheckedCalls() override { ny_sim_reset(); }

    // The answer that the agent gets when it has this enforcer execute a task of the product.
    int32_t Execute(const TaskEnforcer::Operation& operation) {
        TaskEnforcer enforcer(operation);
        const TaskEnforcerRegistration registration(id, enforcer);
        const Product product(id, &sink, VsMsgbusServiceTask);
        SetTasks(R"([{"id": "task", "product": ")" + id + R"("}])");
        const int32_t answer = AnswerOf("task");
        ny_sim_reset();
        return answer;
    }
};

TEST_F(CheckedCalls, AnOutputAreaThatIsTooSmallIsNamedAndNotOverrun) {
    const Registration registration(id, collector);
    const Product product(id, &sink);
    const unsigned char text[32] = {1, 2, 3};
    std::vector<unsigned char> tooSmall(32);
    unsigned size = 0;
    EXPECT_EQ(VsKitMsgbusEncryptData(text, sizeof text, tooSmall.data(), &size, 0), 0);
    EXPECT_GT(size, tooSmall.size());
    EXPECT_EQ(Found("OUTPUT-TOO-SMALL"), 1U);
    EXPECT_THAT(file.Text(), testing::HasSubstr("VsKitMsgbusEncryptData writes " + std::to_string(size) +
                                                " bytes where 32 have room: "));
}

TEST_F(CheckedCalls, AnOutputAreaThatIsLargeEnoughIsRight) {
    const Registration registration(id, collector);
    const Product product(id, &sink);
    const unsigned char text[32] = {1, 2, 3};
    std::vector<unsigned char> secret(sizeof text + 64);
    std::vector<unsigned char> again(sizeof text + 64);
    unsigned size = 0;
    EXPECT_EQ(VsKitMsgbusEncryptData(text, sizeof text, secret.data(), &size, 0), 0);
    EXPECT_EQ(VsKitMsgbusDecryptData(secret.data(), size, again.data(), &size, 0), 0);
    EXPECT_EQ(std::vector<unsigned char>(again.begin(), again.begin() + size),
              std::vector<unsigned char>(std::begin(text), std::end(text)));
}

TEST_F(CheckedCalls, ABufferThatIsNotInitialisedIsNamed) {
    const Registration registration(id, collector);
    const Product product(id, &sink);
    int somethingElse = 0;
    lpc_buffer out;
    out.kind = lpc_buffer::WideText;
    out.data = &somethingElse;
    EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &out), 1);
    out.Release();
    EXPECT_EQ(Found("BUFFER-NOT-EMPTY"), 1U);
}

TEST_F(CheckedCalls, ABufferThatIsReleasedTwiceIsNamed) {
    const Registration registration(id, collector);
    const Product product(id, &sink);
    lpc_buffer out;
    EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &out), 1);
    lpc_buffer copy = out;
    out.Release();
    copy.Release();
    EXPECT_EQ(copy.data, nullptr);
    EXPECT_EQ(Found("BUFFER-RELEASED-TWICE"), 1U);
}

TEST_F(CheckedCalls, ABufferOfAnotherAllocatorIsNamed) {
    wchar_t text[] = L"text";
    lpc_buffer out;
    out.kind = lpc_buffer::WideText;
    out.data = text;
    out.Release();
    EXPECT_EQ(Found("BUFFER-FOREIGN"), 1U);
}

TEST_F(CheckedCalls, ABufferThatIsNotReleasedIsNamedAtTheLastExit) {
    lpc_buffer out;
    {
        const Registration registration(id, collector);
        const Product product(id, &sink);
        EXPECT_EQ(VsKitMsgbusGetInfoByKeyName("Version", &out), 0);
    }
    EXPECT_EQ(Found("BUFFER-NOT-RELEASED"), 1U);
    EXPECT_THAT(file.Text(), testing::HasSubstr(": 1 texts that VsKitMsgbusGetInfoByKeyName filled are not released"));
    out.Release();
    EXPECT_EQ(Found("BUFFER-FOREIGN"), 0U);
    { const Product again(id, &sink); }
    EXPECT_EQ(Found("BUFFER-NOT-RELEASED"), 1U);
}

TEST_F(CheckedCalls, ABufferThatIsFilledAgainAndReleasedOnceIsRight) {
    const Registration registration(id, collector);
    const Product product(id, &sink);
    lpc_buffer out;
    EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &out), 1);
    EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationGUID, &out), 1);
    out.Release();
    out.Release();
}

TEST_F(CheckedCalls, ACallThatDoesNothingIsNamed) {
    EXPECT_EQ(VsKitMsgbusEncryptAndEncodeData(), 0);
    EXPECT_EQ(VsKitMsgbusIsRunningInFIPSMode(), 0);
    EXPECT_EQ(Found("NOTHING-DONE"), 1U);
}

TEST_F(CheckedCalls, AStatusThatIsNoneIsNamed) {
    const Registration registration(id, collector);
    const Product product(id, &sink);
    UpdateMsgbusTaskStatus(L"task", 50);
    EXPECT_EQ(Found("TASK-STATUS"), 1U);
    EXPECT_EQ(OnlyLine(), "VsMsgbus check [TASK-STATUS] " + id +
                              ": UpdateMsgbusTaskStatus is given 50: the agent is told that the task has failed. Give "
                              "NothingDecided (2), Failed (3), Succeeded (4) or AgentDefined (6): a percentage is no "
                              "status. (thread , in UpdateMsgbusTaskStatus)");
}

TEST_F(CheckedCalls, ATaskThatAnswersZeroForDoneIsNamed) {
    Execute([](auto&) { return 0; });
    EXPECT_EQ(Found("TASK-ANSWER"), 1U);
    EXPECT_EQ(Found("TASK-WITHOUT-END"), 1U);
}

TEST_F(CheckedCalls, ATaskThatSucceedsAfterAFailedCallIsNoted) {
    Execute([](auto&) {
        EXPECT_EQ(VsKitMsgbusGetInfoByKeyName(nullptr, nullptr), -1);
        return VsKitMsgbus::INYTaskEnforcer::Succeeded;
    });
    EXPECT_EQ(Found("FAILURE-IGNORED"), 1U);
    EXPECT_EQ(OnlyLine(), "VsMsgbus note [FAILURE-IGNORED] " + id +
                              ": ExecuteTask answers Succeeded, although VsKitMsgbusGetInfoByKeyName inside it "
                              "answered -1, a failure: the agent takes the task for done. Look at the answer; where "
                              "the task cannot go on, answer Failed. (thread , in ExecuteTask)");
}

TEST_F(CheckedCalls, ATaskThatFailsAfterAFailedCallIsRight) {
    Execute([](auto&) {
        EXPECT_EQ(VsKitMsgbusGetInfoByKeyName(nullptr, nullptr), -1);
        return VsKitMsgbus::INYTaskEnforcer::Failed;
    });
    EXPECT_EQ(Found("FAILURE-IGNORED"), 0U);
}

TEST_F(CheckedCalls, ATaskWhoseSecondTryGoesWellIsRight) {
    Execute([](auto&) {
        lpc_buffer out;
        EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationVersion, nullptr), 0);
        EXPECT_EQ(VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &out), 1);
        out.Release();
        return VsKitMsgbus::INYTaskEnforcer::Succeeded;
    });
    EXPECT_EQ(Found("FAILURE-IGNORED"), 0U);
}

TEST_F(CheckedCalls, ATaskThatGoesOnAndIsNeverHeardOfAgainIsNamed) {
    Execute([](auto&) { return VsKitMsgbus::INYTaskEnforcer::NothingDecided; });
    EXPECT_EQ(Found("TASK-WITHOUT-END"), 1U);
}

TEST_F(CheckedCalls, ATaskThatGoesOnAndReportsIsRight) {
    Execute([](auto&) {
        UpdateMsgbusTaskStatus(L"task", VsKitMsgbus::INYTaskEnforcer::Succeeded);
        return VsKitMsgbus::INYTaskEnforcer::NothingDecided;
    });
}

TEST_F(CheckedCalls, ATaskWhoseProductLeavesInsideItHasNotGoneOn) {
    std::optional<Product> product;
    TaskEnforcer enforcer([&](auto&) {
        product->Exit();
        return VsKitMsgbus::INYTaskEnforcer::NothingDecided;
    });
    const TaskEnforcerRegistration registration(id, enforcer);
    product.emplace(id, &sink, VsMsgbusServiceTask);
    SetTasks(R"([{"id": "task", "product": ")" + id + R"("}])");
    AnswerOf("task");
    EXPECT_TRUE(AgentIsLetGo());
    ny_sim_reset();
}

TEST_F(CheckedCalls, ATaskThatEndsAfterItsProductHasLeftIsNotNamedAgain) {
    Execute([](auto&) { return VsKitMsgbus::INYTaskEnforcer::NothingDecided; });
    EXPECT_EQ(Found("TASK-WITHOUT-END"), 1U);
    UpdateMsgbusTaskStatus(L"task", VsKitMsgbus::INYTaskEnforcer::Succeeded);
    EXPECT_EQ(Found("NOT-ENTERED"), 0U);
    UpdateMsgbusTaskStatus(L"task", VsKitMsgbus::INYTaskEnforcer::Succeeded);
    EXPECT_EQ(Found("NOT-ENTERED"), 1U);
}

TEST_F(CheckedCalls, AStateOfATaskThatIsNoneIsNamed) {
    TaskEnforcer enforcer;
    enforcer.updateStatus = [](auto&) { return VsKitMsgbus::INYTaskEnforcer::AgentDefined; };
    const TaskEnforcerRegistration registration(id, enforcer);
    const Product product(id, &sink, VsMsgbusServiceTask);
    SetTasks(R"([{"id": "task", "product": ")" + id + R"("}])");
    AnswerOf("task", NY_SIM_TASK_UPDATE_STATUS);
    EXPECT_EQ(Found("TASK-STATE-ANSWER"), 1U);
    ny_sim_reset();
}

TEST_F(CheckedCalls, ANullPropertyIsNamed) {
    collector.collect = [](auto& set) {
        EXPECT_FALSE(set.SetProperty(L"general", L"version", nullptr));
        EXPECT_TRUE(set.SetProperty(L"general", L"version", L""));
    };
    const Registration registration(id, collector);
    const Product product(id, &sink);
    EXPECT_EQ(Ask(id), (std::vector<std::string>{"answer 0", "general:version="}));
    EXPECT_EQ(Found("PROPERTY-NULL"), 1U);
}

TEST_F(CheckedCalls, WhatACallbackThrowsIsNamedWithItsText) {
    collector.collect = [](auto&) { throw std::runtime_error("no licence"); };
    const Registration registration(id, collector);
    const Product product(id, &sink);
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 3"});
    EXPECT_EQ(Found("CALLBACK-THREW"), 1U);
    EXPECT_EQ(OnlyLine(), "VsMsgbus check [CALLBACK-THREW] " + id +
                              ": CollectProperties throws std::runtime_error (\"no licence\"): it is answered as a "
                              "failure, and what was thrown is lost. Catch it in the callback and write it to the "
                              "module's log. (thread , in CollectProperties)");
}

TEST_F(CheckedCalls, ACallbackThatTakesLongIsNamed) {
    const Event never;
    collector.collect = [&](auto&) { never.Wait(std::chrono::milliseconds(1100)); };
    const Registration registration(id, collector);
    const Product product(id, &sink);
    SetNumber("VSMSGBUS_CHECK_SLOW", "1000");
    EXPECT_EQ(Ask(id), std::vector<std::string>{"answer 0"});
    EXPECT_EQ(Found("CALLBACK-SLOW"), 1U);
}

TEST_F(CheckedCalls, ASinkThatTakesLongIsNamed) {
    class SlowSink final : public VsKitMsgbus::ILogSink {
        void Write(int, const wchar_t* line) override {
            if (std::wstring_view(line).find(L"a line") != std::wstring_view::npos) {
                never.Wait(std::chrono::milliseconds(1100));
            }
        }
        Event never;
    } slow;
    SetNumber("VSMSGBUS_CHECK_SLOW", "1000");
    const Registration registration(id, collector);
    const Product product(id, &slow);
    EXPECT_EQ(ny_sim_emit_log(2, "module", "a line"), NY_OK);
    EXPECT_EQ(Found("SINK-SLOW"), 1U);
}

}  // namespace
