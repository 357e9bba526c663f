// The C++ layer, compiled into a module of either ABI.
#include <algorithm>

#include "abi/AbiModuleTest.h"
#include "support/AgentTasks.h"
#include "support/AgentUpdate.h"
#include "support/PolicyNotice.h"

namespace {

class AbiLayer : public AbiTest {
protected:
    AbiLayer() { environment.InstallAgent(); }

    bool Load(const char* productId) const {
        return module.Call<decltype(ModuleLoadLayer)>("ModuleLoadLayer", productId);
    }

    void TearDown() override {
        EXPECT_TRUE(module.Call<decltype(ModuleUnloadLayer)>("ModuleUnloadLayer"));
        EXPECT_EQ(Ask(id), std::vector<std::string>{"answer " + std::to_string(NY_SIM_NOT_REGISTERED)});
        AbiTest::TearDown();
    }
};

TEST_F(AbiLayer, ServesTheAgentAndCatchesWhatItsHandlersThrow) {
    ASSERT_EQ(ny_sim_policies_from_json(R"([
        {"softwareId": "ABI1000", "name": "N", "settingsObject": {"name": "P", "digest": "d1"},
         "sections": [{"name": "S", "settings": {"X": "1", "Y": "2"}}]}])"),
              NY_OK);
    ASSERT_TRUE(Load(id));
    EXPECT_EQ(Ask(id),
              (std::vector<std::string>{"answer 0", "General:Version=1.0", "General:Number=12", "General:Flag=true"}));
    EXPECT_EQ(PolicyNotice(id).Answer(), NY_OK);
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{"Walk S X", "Walk S Y", "Settings N 1", "Settings N 2",
                                                           "Section X 1", "Section Y 2", "Digests d1"}));
    EXPECT_EQ(Update(GetCall(id)), "answer 0, result 0, value <its value>");
    EXPECT_EQ(module.log.Take(), std::vector<std::string>{});
    EXPECT_EQ(Update(SetCall(id)), "answer 0, result 1");
    EXPECT_EQ(module.log.Take(), std::vector<std::string>{"log 3: the handler of updates threw: refused"});
}

TEST_F(AbiLayer, RunsTasksAlsoOnAThreadOfTheirOwnUntilTheyAreStopped) {
    SetTasks(R"([{"id": "short", "product": "ABI1000"},
                 {"id": "endless", "product": "ABI1000", "settings": {"S": {"Steps": 1}}}])");
    ASSERT_TRUE(Load(id));
    EXPECT_EQ(AnswerOf("short"), NY_OK);
    EXPECT_EQ(TakeReports(), std::vector<std::string>{"short 4"});
    EXPECT_EQ(AnswerOf("endless"), NY_OK);
    EXPECT_EQ(AnswerOf("endless", NY_SIM_TASK_STOP), NY_OK);
    // That it goes on, its progress, and its end.
    EXPECT_EQ(ny_sim_wait_task_reports(3, 20000), NY_OK);
    std::vector<std::string> reports = TakeReports();
    ASSERT_FALSE(reports.empty());
    EXPECT_EQ(reports.back(), "endless 3");
    std::sort(reports.begin(), reports.end());
    EXPECT_EQ(reports, (std::vector<std::string>{"endless 2", "endless 3", "endless 6"}));
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{"task short 0", "task endless 1"}));
}

TEST_F(AbiLayer, SaysWhyAProductCannotBeMade) {
    EXPECT_FALSE(Load(""));
    EXPECT_EQ(
        module.log.Take(),
        std::vector<std::string>{"entering the bridge as  failed: The product id must be a text that is not empty."});
    ASSERT_TRUE(Load(id));
}

}  // namespace
