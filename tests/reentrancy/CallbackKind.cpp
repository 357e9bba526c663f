#include "reentrancy/CallbackKind.h"

#include <windows.h>

#include "support/AgentRequest.h"
#include "support/AgentTasks.h"
#include "support/AgentUpdate.h"
#include "support/PolicyNotice.h"

namespace {

constexpr int32_t refusal = 1500;

void AskForProperties(ReentrancyWorld& /*world*/) {
    AgentRequest(ReentrancyWorld::product).Answer();
}

void TellOfPolicies(ReentrancyWorld& /*world*/) {
    PolicyNotice(ReentrancyWorld::product).Answer();
}

template <ny_sim_task_operation operation>
void DoTask(ReentrancyWorld& /*world*/) {
    AnswerOf("task", operation);
}

void FreeCookie(ReentrancyWorld& /*world*/) {
    int cookie = 0;
    VsKitMsgbusFreeTaskCookie(ReentrancyWorld::wideProduct, &cookie);
}

template <std::string (*call)(const std::string&)>
void CallOfUpdater(ReentrancyWorld& /*world*/) {
    AgentUpdate(call(ReentrancyWorld::product)).Answer();
}

void WriteAgentLine(ReentrancyWorld& /*world*/) {
    EXPECT_EQ(ny_sim_emit_log(2, "module", "the agent's own line"), NY_OK);
}

void FailNext(const char* function) {
    EXPECT_EQ(ny_sim_fail_call(function, 1, refusal, NY_SIM_ONCE), NY_OK);
}

void FailToLoad(ReentrancyWorld& world) {
    world.PutAgentWithoutValues();
    world.EnterAll();
    AskForProperties(world);
}

void FailToStartInEntry(ReentrancyWorld& world) {
    world.Register();
    FailNext("ny_client_handler_start");
    world.EnterProduct();
}

// Returns when the watcher has written the line.
void FailToStartInWatcher(ReentrancyWorld& world) {
    world.EnterAll();
    FailNext("ny_client_handler_start");
    world.PutNewerAgent();
    EXPECT_TRUE(ReentrancyWorld::WaitForWatcher([&](auto limit) { return world.trap.WaitUntilOver(limit); }));
}

void FailToStopInExit(ReentrancyWorld& world) {
    world.EnterAll();
    FailNext("ny_client_handler_stop");
    world.ExitProduct();
}

void FailToStopInWatcher(ReentrancyWorld& world) {
    world.EnterAll();
    FailNext("ny_client_handler_stop");
    ReentrancyWorld::TakeAgentAway();
    EXPECT_TRUE(ReentrancyWorld::WaitForWatcher([&](auto limit) { return world.trap.WaitUntilOver(limit); }));
}

void FailInformation(ReentrancyWorld& /*world*/) {
    FailNext("ny_info_get");
    VsKitMsgbus::lpc_buffer text{};
    VsKitMsgbusGetInformation(VsMsgbusInformationVersion, &text);
    text.Release();
}

void FailProperty(ReentrancyWorld& world) {
    FailNext("ny_property_bag_add_property");
    AskForProperties(world);
}

void FailWalk(ReentrancyWorld& world) {
    FailNext("ny_policy_get");
    TellOfPolicies(world);
}

constexpr uint32_t collecting = InCollector | InAgentCallback;
constexpr uint32_t enforcing = InEnforcer | InAgentCallback;
constexpr uint32_t atTask = InTaskEnforcer | InAgentCallback;
constexpr uint32_t updating = InUpdateCallback | InAgentCallback;

constexpr CallbackKind kinds[] = {
    {"CollectProperties", collecting, L"", AskForProperties, false, NY_SIM_CALL_PROPERTIES},
    {"GetLogLevelOfCollector", collecting, L"", AskForProperties, false, NY_SIM_CALL_PROPERTIES},
    {"GetLogLevelOfEnforcer", enforcing, L"", TellOfPolicies, false, NY_SIM_CALL_POLICY},
    {"EnforcePolicy", enforcing, L"", TellOfPolicies, false, NY_SIM_CALL_POLICY},
    {"OnContainer", enforcing, L"", TellOfPolicies, false, NY_SIM_CALL_POLICY},
    {"OnSettings", enforcing, L"", TellOfPolicies, false, NY_SIM_CALL_POLICY},
    {"OnSection", enforcing, L"", TellOfPolicies, false, NY_SIM_CALL_POLICY},
    {"OnSetting", enforcing, L"", TellOfPolicies, false, NY_SIM_CALL_POLICY},
    {"ExecuteTask", atTask, L"", DoTask<NY_SIM_TASK_EXECUTE>, false, NY_SIM_CALL_TASK_EXECUTE},
    {"UpdateTaskStatus", atTask, L"", DoTask<NY_SIM_TASK_UPDATE_STATUS>, false, NY_SIM_CALL_TASK_UPDATE_STATUS},
    {"StopTask", atTask, L"", DoTask<NY_SIM_TASK_STOP>, false, NY_SIM_CALL_TASK_STOP},
    {"RemoveTask", atTask, L"", DoTask<NY_SIM_TASK_REMOVE>, false, NY_SIM_CALL_TASK_REMOVE},
    // The task that is made up inside register has no settings.
    {"VisitSetting", atTask, L"", DoTask<NY_SIM_TASK_EXECUTE>},
    {"FreeCookie", InTaskEnforcer, L"", FreeCookie},
    {"UpdateNotify", updating, L"", CallOfUpdater<NotifyCall>, false, NY_SIM_CALL_UPDATE_NOTIFY},
    {"GetProductInfo", updating, L"", CallOfUpdater<GetCall>, false, NY_SIM_CALL_GET_PRODUCT_INFO},
    {"SetProductInfo", updating, L"", CallOfUpdater<SetCall>, false, NY_SIM_CALL_SET_PRODUCT_INFO},
    {"Write_AgentLine", InAgentLine | InSink, L"the agent's own line", WriteAgentLine},
    {"Write_FailingLoad", collecting | InSink, L"[dispatcher]", FailToLoad, true},
    {"Write_FailingStartInEntry",
     InEntryOrExit | InSink,
     L"falied to start ny client.",
     FailToStartInEntry,
     true,
     {},
     true},
    {"Write_FailingStartOfWatcher", InWatcher | InSink, L"falied to start ny client.", FailToStartInWatcher, true},
    {"Write_FailingStopInExit", InEntryOrExit | InSink, L"Failed to stop VsMsgbus", FailToStopInExit, true, {}, true},
    {"Write_FailingStopOfWatcher", InWatcher | InSink, L"Failed to stop VsMsgbus", FailToStopInWatcher, true},
    {"Write_FailingProvider", InAgentCallback | InSink, L"Failed to add property in the property bag",
     AskForProperties},
    {"Write_FailingEnforcer", InAgentCallback | InSink, L"Failed to get the policy", TellOfPolicies},
    {"Write_FailingInformation", InSink, L"Failed to get the agent info", FailInformation},
    {"WriteOfModule_Property", collecting, L"Failed to add property for", FailProperty},
    {"WriteOfModule_Walk", enforcing, L"Failed to iterate the policy bag", FailWalk},
    {"OnLogEvent", enforcing, L"", TellOfPolicies, false, NY_SIM_CALL_POLICY},
};

}  // namespace

std::span<const CallbackKind> CallbackKinds() {
    return kinds;
}
