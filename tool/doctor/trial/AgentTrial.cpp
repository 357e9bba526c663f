#include "tool/doctor/trial/AgentTrial.h"

#include <fmt/format.h>

#include <map>
#include <optional>

#include "VsMsgbus/ny_dl.h"
#include "agent/ny_agent.h"
#include "dispatcher/EntryPoint.h"
#include "dispatcher/RuntimePath.h"

namespace tool::doctor {

namespace {

const TrialSteps* stepsOfLog = nullptr;

int32_t TakeLogLine(uint32_t severity, const char* module, const char* message, void* /*userData*/) {
    constexpr uint32_t failure = 2;
    if (severity <= failure && stepsOfLog != nullptr) {
        stepsOfLog->Say(fmt::format("the agent's log: [{}] {}", module != nullptr ? module : "",
                                    message != nullptr ? message : ""));
    }
    return NY_OK;
}

// The callback for a product that is unregistered again in a moment. The bridge, too, answers so to a call that comes
// too late.
template <class... Arguments>
int32_t AnswerTooLate(Arguments... /*arguments*/) {
    return NY_UNEXPECTED;
}

constexpr ny_task_callbacks_t taskCallbacks = {&AnswerTooLate, &AnswerTooLate, &AnswerTooLate, &AnswerTooLate};
constexpr ny_updater_callbacks_t updateCallbacks = {&AnswerTooLate, &AnswerTooLate, &AnswerTooLate, &AnswerTooLate};

// The agent's libraries that are open.
class OpenLibraries {
public:
    OpenLibraries(const std::vector<std::string>& names, const TrialSteps& trialSteps) : steps(trialSteps) {
        std::optional<std::string> folder;
        bridge::LookUpRuntimePath(bridge::agentSoftwareId, folder);
        for (const std::string& name : names) {
            const std::string path = folder.value_or("") + '\\' + name;
            ny_dl_t library{};
            if (steps.Make(LoadingStep(name), [&] { return ny_dl_open(path.c_str(), 0, &library); }) == 0) {
                libraries[name] = library;
            }
        }
    }

    bool Has(const char* library) const { return libraries.count(library) != 0; }

    // Calls the function of ny_client.dll by the name and with the type of its prototype.
    template <auto function, class... Arguments>
    int32_t Call(Arguments... arguments) {
        const std::string name(bridge::entrypoint::NameOf<function>());
        return steps.Make(name, [&]() -> int32_t {
            void* const address = ny_dl_sym(&libraries["ny_client.dll"], name.c_str());
            return address != nullptr ? reinterpret_cast<decltype(function)>(address)(arguments...)
                                      : int32_t{NY_FUNCTION_MISSING};
        });
    }

    void Close() {
        steps.Make("unloading", [&] {
            for (auto& [name, library] : libraries) {
                ny_dl_close(&library);
            }
            return 0;
        });
    }

private:
    const TrialSteps& steps;
    std::map<std::string, ny_dl_t> libraries;
};

void Configure(OpenLibraries& agent, ny_client_t* client) {
    agent.Call<&::ny_client_handler_set_msgbus_passphrase_callback>(client, nullptr, nullptr);
    agent.Call<&::ny_client_handler_set_thread_option>(client, 0U);
    agent.Call<&::ny_client_handler_set_logger_callback>(client, &TakeLogLine, nullptr);
}

void TryProduct(OpenLibraries& agent, ny_client_t* client, const char* id) {
    // As the bridge has it: all kinds of changes.
    constexpr uint32_t allChanges = 63;
    constexpr ny_property_provider_t provide = &AnswerTooLate;
    constexpr ny_policy_callback_t notify = &AnswerTooLate;
    if (agent.Call<&::ny_property_register_provider_callback>(client, id, provide, nullptr) == NY_OK) {
        agent.Call<&::ny_property_unregister_provider_callback>(client, id);
    }
    if (agent.Call<&::ny_policy_register_notification_callback>(client, id, allChanges, notify, nullptr) == NY_OK) {
        agent.Call<&::ny_policy_unregister_notification_callback>(client, id);
    }
    if (agent.Call<&::ny_scheduler_register_task_callbacks>(client, id, nullptr, &taskCallbacks, nullptr) == NY_OK) {
        agent.Call<&::ny_scheduler_unregister_task_callbacks>(client, id, nullptr);
    }
    if (agent.Call<&::ny_updater_register_callbacks>(client, id, &updateCallbacks, nullptr) == NY_OK) {
        agent.Call<&::ny_updater_unregister_callbacks>(client, id);
    }
}

void TryClient(OpenLibraries& agent, const char* id) {
    ny_client_t* client = nullptr;
    if (agent.Call<&::ny_client_handler_create>(id, &client) != NY_OK) {
        return;
    }
    Configure(agent, client);
    if (agent.Call<&::ny_client_handler_start>(client) == NY_OK) {
        ny_msgbus_t* bus = nullptr;
        agent.Call<&::ny_client_handler_get_msgbus>(client, &bus);
        TryProduct(agent, client, id);
        agent.Call<&::ny_client_handler_stop>(client);
    }
    agent.Call<&::ny_client_handler_release>(client);
}

}  // namespace

std::string LoadingStep(const std::string& library) {
    return "the loading of " + library;
}

void TryAgent(const std::string& productId, const std::vector<std::string>& libraries, const TrialSteps& steps) {
    stepsOfLog = &steps;
    OpenLibraries agent(libraries, steps);
    if (agent.Has("ny_client.dll")) {
        TryClient(agent, productId.c_str());
    }
    agent.Close();
    stepsOfLog = nullptr;
}

}  // namespace tool::doctor
