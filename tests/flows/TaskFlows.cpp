#include "flows/EnteredFlow.h"
#include "flows/FlowList.h"
#include "support/AgentTasks.h"

namespace {

using ITaskBag = VsKitMsgbus::INYTaskEnforcer::ITaskBag;

class TaskFlowBase : public EnteredFlow<VsMsgbusServiceTask> {
public:
    using EnteredFlow::EnteredFlow;
    void Prepare() override {
        const std::string accessors =
            world.lackingAccessor.empty() ? "{}" : "{\"" + world.lackingAccessor + "\": \"absent\"}";
        SetTasks(R"([{"id": "task", "product": "PRODUCT1000", "name": "The task", "type": "Scan", "settings": {
            "Scan": {"Folder": "C:\\", "Depth": "12", "Deep": "TRUE"}}, "accessors": )" +
                 accessors + "}]");
        EnteredFlow::Prepare();
    }

protected:
    void NoteReports() {
        for (const std::string& report : TakeReports()) {
            world.Note("agent: status of " + report);
        }
    }
};

// The agent has one thing done with the task; the module reads all of its bag when it executes.
template <ny_sim_task_operation operation>
class TaskFlow final : public TaskFlowBase, private VsKitMsgbus::INYTaskEnforcer, private ITaskBag::ISettingVisitor {
public:
    using TaskFlowBase::TaskFlowBase;
    void Run() override {
        world.Note("Set: " + TextOf(VsKitMsgbusSetTaskEnforcer(FlowWorld::wideProduct, this, nullptr)));
        world.Note("agent: answer " + std::to_string(AnswerOf("task", operation)));
        NoteReports();
        world.Note("Remove: " + TextOf(VsKitMsgbusRemoveTaskEnforcer(FlowWorld::wideProduct)));
    }

private:
    int32_t ExecuteTask(const wchar_t* taskId, ITaskBag* bag) override {
        world.Note("module: ExecuteTask " + Narrow(taskId));
        Read(*bag);
        return Succeeded;
    }
    int32_t UpdateTaskStatus(const wchar_t* taskId, ITaskBag* /*bag*/) override {
        world.Note("module: UpdateTaskStatus " + Narrow(taskId));
        return Succeeded;
    }
    int32_t StopTask(const wchar_t* taskId, ITaskBag* /*bag*/) override {
        world.Note("module: StopTask " + Narrow(taskId));
        return Failed;
    }
    int32_t RemoveTask(const wchar_t* taskId, ITaskBag* /*bag*/) override {
        world.Note("module: RemoveTask " + Narrow(taskId));
        return Failed;
    }
    void FreeCookie(void* /*cookie*/) override { world.Note("module: FreeCookie"); }

    void BeginSettings() override { world.Note("module: BeginSettings"); }
    void VisitSetting(const wchar_t* section, const wchar_t* key, const wchar_t* value) override {
        world.Note("module: setting " + Narrow(section) + ": " + Narrow(key) + "=" + Narrow(value));
    }

    void Read(ITaskBag& bag) {
        VsKitMsgbus::lpc_buffer name{};
        const bool hasName = bag.GetTaskName(&name);
        world.Note("module: GetTaskName: " + TextOf(hasName) + " " + TakeBuffer(name));
        VsKitMsgbus::lpc_buffer text{};
        const bool hasText = bag.GetText(L"Scan", L"Folder", &text);
        world.Note("module: GetText: " + TextOf(hasText) + " " + TakeBuffer(text));
        bool isDeep = false;
        const bool hasDeep = bag.GetBoolean(L"Scan", L"Deep", &isDeep);
        world.Note("module: GetBoolean: " + TextOf(hasDeep) + " " + TextOf(isDeep));
        int32_t depth = -1;
        const bool hasDepth = bag.GetInteger(L"Scan", L"Depth", &depth);
        world.Note("module: GetInteger: " + TextOf(hasDepth) + " " + std::to_string(depth));
        world.Note("module: CountEntries: " + std::to_string(bag.CountEntries()));
        world.Note("module: IterateSettings: " + std::to_string(bag.IterateSettings(this, L"Scan")));
    }
};

// The module reports on its own.
class StatusReportFlow final : public TaskFlowBase {
public:
    using TaskFlowBase::TaskFlowBase;
    void Run() override {
        UpdateMsgbusTaskStatus(L"task", 4);
        NoteReports();
    }
};

}  // namespace

std::vector<FlowKind> TaskFlows() {
    return {{"TaskExecute", MakeFlow<TaskFlow<NY_SIM_TASK_EXECUTE>>},
            {"TaskStop", MakeFlow<TaskFlow<NY_SIM_TASK_STOP>>},
            {"TaskRemove", MakeFlow<TaskFlow<NY_SIM_TASK_REMOVE>>},
            {"TaskUpdateStatus", MakeFlow<TaskFlow<NY_SIM_TASK_UPDATE_STATUS>>},
            {"StatusReport", MakeFlow<StatusReportFlow>}};
}
