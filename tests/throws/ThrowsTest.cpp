#include "throws/ThrowsTest.h"

#include "support/ModuleImports.h"
#include "support/SystemFunction.h"

namespace {

// While it lives, the bridge's calls of the host's log go to the module's.
class HostsLogOfModule {
public:
    explicit HostsLogOfModule(const ThrowingModule& module) {
        Replace("getLogManager", reinterpret_cast<void*>(module.getLogManager));
        Replace("_ZNK8LogUtils8LogEventclEPKwS2_", reinterpret_cast<void*>(module.logWide));
        Replace("_ZNK8LogUtils8LogEventclEPKwPKcz", reinterpret_cast<void*>(module.logFormatted));
        EXPECT_EQ(replaced.size(), 3U);
    }
    ~HostsLogOfModule() {
        for (const auto& [slot, original] : replaced) {
            SetImport(slot, original);
        }
    }
    HostsLogOfModule(const HostsLogOfModule&) = delete;
    HostsLogOfModule& operator=(const HostsLogOfModule&) = delete;

private:
    void Replace(const std::string& name, void* function) {
        for (const ModuleImport& import : ImportsOf("VsMsgbus.dll")) {
            if (import.function == name) {
                replaced.emplace_back(import.slot, *import.slot);
                SetImport(import.slot, function);
            }
        }
    }

    std::vector<std::pair<void**, void*>> replaced;
};

std::string Answered(int32_t answer) {
    return "answer " + std::to_string(answer);
}

std::string AnsweredForTask(ny_sim_task_operation operation) {
    std::string line = Answered(AnswerOf("TASK1", operation));
    for (const std::string& report : TakeReports()) {
        line += ", report " + report;
    }
    return line;
}

constexpr const char* policies = R"([
    {"softwareId": "THROWING1000", "feature": "F", "category": "QTP_General_Policies", "type": "T", "name": "N",
     "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a", "digest": "digest"},
     "sections": [{"name": "S", "settings": {"X": "1", "Y": "2"}}]},
    {"softwareId": "THROWING1000", "user": "DOMAIN\\user", "feature": "F", "category": "C", "type": "T", "name": "N",
     "settingsObject": {"name": "P", "intParameter": "1", "stringParameter": "a"},
     "sections": [{"name": "S", "settings": {"X": "1"}}]}])";
constexpr const char* tasks =
    R"([{"id": "TASK1", "product": "THROWING1000", "name": "N", "settings": {"Scan": {"A": "1", "B": "2"}}}])";

}  // namespace

ThrowsTest::ThrowsTest(const std::string& file) : module(file.c_str()) {
    environment.InstallAgent();
    EXPECT_EQ(ny_sim_policies_from_json(policies), NY_OK);
    SetTasks(tasks);
    // The names of policies are recorded and logged.
    const simulator::RegistryKey names(HKEY_LOCAL_MACHINE, "SOFTWARE\\Corvane\\Endpoint\\AV", KEY_ALL_ACCESS);
    EXPECT_TRUE(VsKitMsgbusSetCollectProperties(wideId.c_str(), module->collector, module->sinkOfRegistrations));
    EXPECT_TRUE(VsKitMsgbusSetEnforcePolicy(wideId.c_str(), module->enforcer, module->sinkOfRegistrations));
    EXPECT_TRUE(VsKitMsgbusSetTaskEnforcer(wideId.c_str(), module->taskEnforcer, nullptr));
    EXPECT_TRUE(VsKitMsgbusSetUpdateNotify(wideId.c_str(), module->updates, nullptr));
    EXPECT_TRUE(VsMsgbusEntry(id, ~0U, module->sinkOfBridge, &instance));
}

void ThrowsTest::TearDown() {
    EXPECT_TRUE(VsMsgbusExit(id, instance));
    EXPECT_TRUE(VsKitMsgbusRemoveCollectProperties(wideId.c_str()));
    EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId.c_str()));
    EXPECT_TRUE(VsKitMsgbusRemoveTaskEnforcer(wideId.c_str()));
    EXPECT_TRUE(VsKitMsgbusRemoveUpdateNotify(wideId.c_str()));
    AgentTest::TearDown();
}

std::vector<std::string> ThrowsTest::Ask(Place place) {
    module.log.Take();
    const std::string outcome = AskOnce(place);
    std::vector<std::string> lines = module.log.Take();
    lines.push_back(outcome);
    return lines;
}

std::string ThrowsTest::AskOnce(Place place) const {
    switch (place) {
        case Place::Nowhere:
        case Place::HealthCheck: break;
        case Place::CollectProperties:
        case Place::LevelOfCollector: return Answered(AgentRequest(id).Answer());
        case Place::LevelOfEnforcer:
        case Place::EnforcePolicy:
        case Place::OnContainer:
        case Place::OnSettings:
        case Place::OnSection:
        case Place::OnSetting:
        case Place::OnSettingOfInnerWalk: return Answered(PolicyNotice(id).Answer());
        case Place::ExecuteTask:
        case Place::VisitSetting: return AnsweredForTask(NY_SIM_TASK_EXECUTE);
        case Place::UpdateTaskStatus: return AnsweredForTask(NY_SIM_TASK_UPDATE_STATUS);
        case Place::StopTask: return AnsweredForTask(NY_SIM_TASK_STOP);
        case Place::RemoveTask: return AnsweredForTask(NY_SIM_TASK_REMOVE);
        case Place::FreeCookie: VsKitMsgbusFreeTaskCookie(wideId.c_str(), nullptr); return "returned";
        case Place::UpdateNotify: return Update(NotifyCall(id));
        case Place::GetProductInfo: return Update(GetCall(id));
        case Place::SetProductInfo: return Update(SetCall(id));
        case Place::WriteOfBridge: {
            // A line of the bridge's, for a product without an enforcer.
            EXPECT_TRUE(VsKitMsgbusRemoveEnforcerPolicy(wideId.c_str()));
            const std::string answer = Answered(PolicyNotice(id).Answer());
            EXPECT_TRUE(VsKitMsgbusSetEnforcePolicy(wideId.c_str(), module->enforcer, module->sinkOfRegistrations));
            return answer;
        }
        case Place::WriteOfRegistration: {
            // A property and a walk that the agent fails.
            ny_sim_fail_call("ny_property_bag_add_property", 1, 5, NY_SIM_ONCE);
            std::string answers = Answered(AgentRequest(id).Answer());
            ny_sim_fail_call("ny_policy_get", 1, 5, NY_SIM_ONCE);
            answers += ", " + Answered(PolicyNotice(id).Answer());
            return answers;
        }
        case Place::OnLogEvent: {
            // The name of a policy is logged.
            EXPECT_EQ(getLogManager()->SetListener(module->listener), nullptr);
            const std::string answer = Answered(PolicyNotice(id).Answer());
            EXPECT_EQ(getLogManager()->SetListener(nullptr), module->listener);
            return answer;
        }
        case Place::HostsManager:
        case Place::HostsWideEvent: {
            const HostsLogOfModule log(*module.operator->());
            return Answered(PolicyNotice(id).Answer());
        }
        case Place::HostsFormattedEvent: {
            const HostsLogOfModule log(*module.operator->());
            ny_sim_fail_call("ny_policy_uri_get_pso_digest", 1, 5, NY_SIM_ONCE);
            return Answered(PolicyNotice(id).Answer());
        }
    }
    throw std::logic_error("the bridge does not call this place");
}
