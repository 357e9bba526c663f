#include "throws/ThrowsTest.h"

#include <algorithm>

#include "Registry.h"
#include "support/ModuleImports.h"
#include "support/SystemFunction.h"
#ifdef _WIN32
#include "abi/Pair.h"
#endif

namespace {

// While it lives, the bridge's calls of the host's log go to the module's.
class HostsLogOfModule {
public:
    explicit HostsLogOfModule(const ThrowingModule& module) {
        Replace({"getLogManager"}, reinterpret_cast<void*>(module.getLogManager));
        // By the names of either compiler.
        Replace({"_ZNK8LogUtils8LogEventclEPKwS2_", "??RLogEvent@LogUtils@@QEBAXPEB_W0@Z"},
                reinterpret_cast<void*>(module.logWide));
        Replace({"_ZNK8LogUtils8LogEventclEPKwPKcz", "??RLogEvent@LogUtils@@QEBAXPEB_WPEBDZZ"},
                reinterpret_cast<void*>(module.logFormatted));
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
    void Replace(const std::vector<std::string>& names, void* function) {
        for (const ModuleImport& import : ImportsOf("VsMsgbus.dll")) {
            if (std::find(names.begin(), names.end(), import.function) != names.end()) {
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

ThrowsTest::ThrowsTest() {
    environment.InstallAgent();
    EXPECT_EQ(ny_sim_policies_from_json(policies), NY_OK);
    SetTasks(tasks);
    // The names of policies are recorded and logged.
    const simulator::RegistryKey names(HKEY_LOCAL_MACHINE, "SOFTWARE\\Corvane\\Endpoint\\AV", KEY_ALL_ACCESS);
    EXPECT_TRUE(module->enter(id, wideId.c_str()));
}

void ThrowsTest::SetUp() {
#ifdef _WIN32
    const Pair pair = ThisPair();
    if (pair.module == "gnu" && pair.bridge == "microsoft") {
        GTEST_SKIP()
            << "a bridge of Microsoft's ABI is not shipped, and answers the exceptions of its own compiler alone";
    }
#endif
}

void ThrowsTest::TearDown() {
    EXPECT_TRUE(module->leave(id, wideId.c_str()));
    AgentIsLetGo();
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
        case Place::FreeCookie: module->freeCookie(wideId.c_str()); return "returned";
        case Place::UpdateNotify: return Update(NotifyCall(id));
        case Place::GetProductInfo: return Update(GetCall(id));
        case Place::SetProductInfo: return Update(SetCall(id));
        case Place::WriteOfBridge: {
            // A line of the bridge's, for a product without an enforcer.
            EXPECT_TRUE(module->setEnforcer(wideId.c_str(), false));
            const std::string answer = Answered(PolicyNotice(id).Answer());
            EXPECT_TRUE(module->setEnforcer(wideId.c_str(), true));
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
            module->listen(true);
            const std::string answer = Answered(PolicyNotice(id).Answer());
            module->listen(false);
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
