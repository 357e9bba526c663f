// Every slot of the task enforcer, its bag and its visitor, called across the border.
#include "abi/AbiModuleTest.h"
#include "support/AgentTasks.h"

namespace {

class Tasks : public AbiModuleTest {
protected:
    Tasks() : AbiModuleTest("Tasks", VsMsgbusServiceTask) {
        SetTasks(R"([{"id": "task", "product": "ABI1000", "name": "The task", "settings": {
            "Scan": {"Folder": "C:\\", "Depth": "12", "Deep": "FALSE"}, "Report": {}}}])");
    }
};

TEST_F(Tasks, ReadsItsTaskWhenItExecutesIt) {
    EXPECT_EQ(AnswerOf("task"), NY_OK);
    EXPECT_EQ(module.log.Take(),
              (std::vector<std::string>{
                  "ExecuteTask task", "CountEntries answers 2", "VisitSetting Scan Folder C:\\",
                  "VisitSetting Scan Depth 12", "VisitSetting Scan Deep FALSE", "IterateSettings answers 1",
                  "GetBoolean answers 1: 1", "GetText answers 1: C:\\", "GetInteger answers 1: 12",
                  "GetTaskName answers 1: The task", "Text gives C:\\", "TaskName gives The task"}));
    EXPECT_EQ(TakeReports(), (std::vector<std::string>{"task 6", "task 4"}));
}

TEST_F(Tasks, IsCalledForEveryOtherOperation) {
    for (const auto operation : {NY_SIM_TASK_STOP, NY_SIM_TASK_REMOVE, NY_SIM_TASK_UPDATE_STATUS}) {
        EXPECT_EQ(AnswerOf("task", operation), NY_OK);
    }
    wchar_t cookie[] = L"cookie";
    module.Call<decltype(ModuleFreeTaskCookie)>("ModuleFreeTaskCookie", Wide(id).c_str(), cookie);
    EXPECT_EQ(module.log.Take(), (std::vector<std::string>{"StopTask task", "RemoveTask task", "UpdateTaskStatus task",
                                                           "FreeCookie cookie"}));
    EXPECT_EQ(TakeReports(), std::vector<std::string>{"task 2"});
}

}  // namespace
