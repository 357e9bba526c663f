/// @file
/// A machine of a test's own, and what the agent does on it.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "ny_setup.h"
#include "ny_simulator.h"
#include "vsmsgbus_testing/Failure.hpp"
#include "vsmsgbus_testing/Leftovers.hpp"
#include "vsmsgbus_testing/Properties.hpp"
#include "vsmsgbus_testing/Registrations.hpp"
#include "vsmsgbus_testing/Request.hpp"
#include "vsmsgbus_testing/Tasks.hpp"
#include "vsmsgbus_testing/Updates.hpp"

namespace vsmsgbus::testing {

/// A machine without an agent at first. HKEY_LOCAL_MACHINE of the process is the machine's own while it lives: see
/// ny_setup_machine_create. One at a time in a process, used on one thread at a time.
///
/// Let the module leave before the machine ends. What the agent was told and what it recorded (policies, tasks, faults,
/// calls) is forgotten when a machine is made.
class Machine {
public:
    /// @param builds  the folder of the simulated agent's builds; empty for agent/ beside the folder of the program,
    ///                where vsmsgbus_prepare_host of the CMake package puts them
    explicit Machine(const std::string& builds = {}) {
        Demand(ny_setup_machine_create(builds.empty() ? nullptr : builds.c_str(), &machine), "making a machine");
        ny_sim_reset();
    }
    /// Removes the agent and ends the machine. What cannot be deleted stays, without a failure.
    ~Machine() { ny_setup_machine_destroy(machine); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    /// For the single steps of ny_setup.h. Owned by this object.
    ny_setup_machine_t* Setup() const noexcept { return machine; }

    // --- The agent comes and goes -----------------------------------------------------------------------------------

    /// Installs the agent. Modules that have entered before are registered soon, but not at once.
    /// @param version  what the installer says that it is; any text that is a file name
    /// @param build    full; older, which says itself that it is of version 5.6.0; lacking, which lacks functions; or
    ///                 empty and text, which are no agent
    void InstallAgent(const std::string& version = "5.7.0", const std::string& build = "full") {
        Demand(ny_setup_install(machine, version.c_str(), build.c_str()), "installing the agent " + version);
        agent = "agent " + version + " (" + build + ") is installed";
    }
    /// Upgrades the agent. Modules that have entered leave the one that was there and are registered with the new one
    /// soon, but not at once: WaitUntilRegistered waits for the new one.
    /// @param version  another one than the agent's, or the bridge sees no upgrade
    /// @param build    as for InstallAgent
    void Upgrade(const std::string& version, const std::string& build = "full") {
        restartedAfter = ny_sim_started_clients() != 0 ? std::optional(ny_sim_call_count(nullptr)) : std::nullopt;
        Demand(ny_setup_upgrade(machine, version.c_str(), build.c_str()), "upgrading the agent to " + version);
        agent = "agent " + version + " (" + build + ") is installed";
    }
    /// Removes the agent; one that is not there counts as removed.
    void Remove() {
        Demand(ny_setup_remove(machine), "removing the agent");
        agent = noAgent;
    }

    // --- Who is registered ------------------------------------------------------------------------------------------

    /// Waits until the agent could call the product for the service. The failure says what each product is registered
    /// for.
    void WaitUntilRegistered(const std::string& product, Service service,
                             std::chrono::milliseconds limit = usualLimit) const {
        if (!WaitForBridge(limit, [&] { return HasRestarted() && IsRegistered(product, service); })) {
            throw Failure(detail::WaitedUntil(limit, product + " is registered for " + detail::NameOf(service)) +
                          Describe(product) + (HasRestarted() ? "" : ", none since the upgrade"));
        }
    }
    /// Waits until the agent could no longer call the product for the service: after a Remove of the agent, say.
    void WaitUntilUnregistered(const std::string& product, Service service,
                               std::chrono::milliseconds limit = usualLimit) const {
        if (!WaitForBridge(limit, [&] { return !IsRegistered(product, service); })) {
            throw Failure(
                detail::WaitedUntil(limit, product + " is no longer registered for " + detail::NameOf(service)) +
                Describe(product));
        }
    }
    /// A text about the product's registrations, the other products' and the agent.
    std::string Describe(const std::string& product) const {
        return detail::DescribeProduct(product) + "; " + detail::DescribeOtherProducts(product) + "; " + agent + ", " +
               detail::Counted(ny_sim_started_clients(), "client has", "clients have") + " started";
    }

    // --- Properties -------------------------------------------------------------------------------------------------

    /// The agent asks the product for its properties. A product that is not registered, does not answer well or gives
    /// none is a failure.
    PropertyList AskProperties(const std::string& product, std::chrono::milliseconds limit = usualLimit) const {
        const size_t callsBefore = ny_sim_call_count(nullptr);
        detail::PropertyRequest request(unanswered);
        DemandRegistered(ny_sim_request_properties(product.c_str(), request.Out()), product,
                         "asking " + product + " for its properties");
        int32_t answer = NY_OK;
        if (!request.IsAnsweredWithin(limit, &answer)) {
            throw Failure(detail::WaitedUntil(limit, product + " has given its properties") + stillInside);
        }
        std::vector<Property> properties = detail::PropertiesOf(request.Get());
        if (answer != NY_OK || properties.empty()) {
            throw Failure("asking " + product + " for its properties: it answered " + std::to_string(answer) +
                          " and gave " + detail::Counted(properties.size(), "property", "properties") + "; " +
                          detail::DescribeCalls("ny_property_bag_add_property", callsBefore));
        }
        return PropertyList(std::move(properties));
    }

    // --- Policies ---------------------------------------------------------------------------------------------------

    /// Replaces all policies of the agent, without a notification.
    /// @param json  of the form that ny_sim_policy.h describes; "[]" for none
    void SetPolicies(const std::string& json) const {
        if (ny_sim_policies_from_json(json.c_str()) != NY_OK) {
            throw Failure("setting the policies: this is not of the form that ny_sim_policy.h describes: " + json);
        }
    }
    /// The agent notifies the product of its policies. Returns when the product's handler has.
    void Notify(const std::string& product, std::chrono::milliseconds limit = usualLimit) const {
        detail::PolicyRequest request(unanswered);
        DemandRegistered(ny_sim_notify_policy(product.c_str(), request.Out()), product,
                         "notifying " + product + " of its policies");
        int32_t answer = NY_OK;
        if (!request.IsAnsweredWithin(limit, &answer)) {
            throw Failure(detail::WaitedUntil(limit, product + " has taken its policies") + stillInside);
        }
        if (answer != NY_OK) {
            throw Failure("notifying " + product + " of its policies: it answered " + std::to_string(answer));
        }
    }

    // --- Tasks ------------------------------------------------------------------------------------------------------

    /// Replaces all tasks of the agent.
    /// @param json  of the form that ny_sim_scheduler.h describes; "[]" for none
    void SetTasks(const std::string& json) const {
        if (ny_sim_tasks_from_json(json.c_str()) != NY_OK) {
            throw Failure("setting the tasks: this is not of the form that ny_sim_scheduler.h describes: " + json);
        }
    }
    /// The agent has the task's product execute it. Returns when the handler has, whether or not the task goes on: see
    /// WaitForTask and StopTask.
    void StartTask(const std::string& taskId, std::chrono::milliseconds limit = usualLimit) {
        started.insert_or_assign(taskId, detail::TaskReports(taskId, ny_sim_task_report_count()));
        RequestTask(taskId, NY_SIM_TASK_EXECUTE, "executing", limit);
    }
    /// Waits until a task that was started has ended.
    /// @returns how it ended, as the product reported
    TaskEnd WaitForTask(const std::string& taskId, std::chrono::milliseconds limit = usualLimit) const {
        const auto found = started.find(taskId);
        if (found == started.end()) {
            throw Failure("waiting for the task " + taskId + ": it was not started");
        }
        if (const auto end = found->second.WaitForEnd(limit)) {
            return *end;
        }
        throw Failure(detail::WaitedUntil(limit, "the task " + taskId + " has ended") + found->second.Describe());
    }
    /// StartTask and WaitForTask.
    TaskEnd RunTask(const std::string& taskId, std::chrono::milliseconds limit = usualLimit) {
        StartTask(taskId, limit);
        return WaitForTask(taskId, limit);
    }
    /// The agent has the product stop a task that was started, and waits until it has ended.
    TaskEnd StopTask(const std::string& taskId, std::chrono::milliseconds limit = usualLimit) const {
        RequestTask(taskId, NY_SIM_TASK_STOP, "stopping", limit);
        return WaitForTask(taskId, limit);
    }

    // --- Updates ----------------------------------------------------------------------------------------------------

    /// The agent tells the product of an update.
    /// @returns the product's result
    int32_t Update(const std::string& product, const UpdateNotice& notice = {},
                   std::chrono::milliseconds limit = usualLimit) const {
        const std::string call = detail::OpenObject({{"call", "update notify"},
                                                     {"product", product},
                                                     {"second", notice.second},
                                                     {"third", notice.third},
                                                     {"fourth", notice.fourth}});
        return RequestUpdate(product, call + ", \"number\": " + std::to_string(notice.number) + "}",
                             "telling " + product + " of an update", limit)
            .result;
    }
    /// The agent asks the product for a value by its name. Nothing when the product answers 1: it has none of that
    /// name.
    std::optional<std::string> GetValue(const std::string& product, const std::string& name,
                                        std::chrono::milliseconds limit = usualLimit) const {
        const std::string call =
            detail::OpenObject({{"call", "get product info"}, {"product", product}, {"second", ""}, {"key", name}});
        UpdateAnswer answer = RequestUpdate(product, call + "}", "asking " + product + " for " + name, limit);
        return answer.result == notAvailable ? std::nullopt : std::optional(std::move(answer.value));
    }
    /// The agent sets a value of the product's by its name.
    /// @returns whether the product took it: its result is not 1
    bool SetValue(const std::string& product, const std::string& name, const std::string& value,
                  std::chrono::milliseconds limit = usualLimit) const {
        const std::string call = detail::OpenObject(
            {{"call", "set product info"}, {"product", product}, {"second", ""}, {"key", name}, {"value", value}});
        return RequestUpdate(product, call + "}", "setting " + name + " of " + product, limit).result != notAvailable;
    }

    // --- Faults, and the end ----------------------------------------------------------------------------------------

    /// Has the agent's function answer a code without doing anything.
    /// @param function  its name, as in "ny_property_bag_add_property"
    /// @param nth       at which call, counted from now; 1 is the next one
    /// @param code      as in NY_OUT_OF_MEMORY
    /// @param mode      NY_SIM_FROM_THEN_ON to have all later calls fail as well
    void Fail(const std::string& function, uint32_t nth = 1, int32_t code = NY_UNEXPECTED,
              ny_sim_fault_mode mode = NY_SIM_ONCE) const {
        const int32_t answer = ny_sim_fail_call(function.c_str(), nth, code, mode);
        if (answer == NY_SIM_NOT_SIMULATED) {
            throw Failure("having a call fail: the simulated agent has no function " + function);
        }
        if (answer != NY_OK) {
            throw Failure("having a call of " + function + " fail: the calls are counted from 1");
        }
    }
    /// Ends all that Fail has begun.
    void ClearFaults() const { ny_sim_clear_faults(); }

    /// For the end of a test, when the modules have left: waits until nothing of the agent's is alive. The failure says
    /// what is, and what was misused: see WhatIsLeft.
    void ExpectNothingLeft(std::chrono::milliseconds limit = usualLimit) const {
        // A misuse does not go away.
        WaitUntil(limit, [] { return ny_sim_misuse_count() != 0 || WhatIsLeft().empty(); });
        if (const std::string left = WhatIsLeft(); !left.empty()) {
            throw Failure("nothing of the agent was to be left: " + left);
        }
    }

private:
    struct UpdateAnswer {
        int32_t result;
        std::string value;
    };

    static constexpr char noAgent[] = "no agent is installed";
    static constexpr char stillInside[] = "its handler has not returned";
    static constexpr int32_t notAvailable = 1;

    static void Demand(int32_t code, const std::string& doing) {
        if (code != NY_OK) {
            throw Failure(doing + ": " + ny_setup_last_error());
        }
    }

    void DemandRegistered(int32_t code, const std::string& product, const std::string& doing) const {
        if (code != NY_OK) {
            throw Failure(doing + ": " + Describe(product));
        }
    }

    // Whether a client that had started when the agent was upgraded was followed by one of the new agent.
    bool HasRestarted() const {
        if (!restartedAfter) {
            return true;
        }
        // The record may have been cleared.
        const size_t first = std::min(*restartedAfter, ny_sim_call_count(nullptr));
        ny_sim_call_t call{};
        for (size_t i = first; ny_sim_get_call(i, &call) == NY_OK; ++i) {
            if (call.function == std::string_view("ny_client_handler_start") && call.result == NY_OK) {
                return true;
            }
        }
        return false;
    }

    // Waits for what the bridge does after a change of the agent. A change that it did not watch for yet it would see
    // late, so it is made to look again and again.
    bool WaitForBridge(std::chrono::milliseconds limit, const std::function<bool()>& isMet) const {
        constexpr std::chrono::milliseconds patience{100};
        for (auto left = limit; left > patience; left -= patience) {
            if (WaitUntil(patience, isMet)) {
                return true;
            }
            ny_setup_touch_agent_key(machine);
        }
        return WaitUntil(std::min(limit, patience), isMet);
    }

    // Asks `isMet` again after each call of the agent and every few milliseconds, because the end of a registration or
    // of a handle is not announced.
    static bool WaitUntil(std::chrono::milliseconds limit, const std::function<bool()>& isMet) {
        constexpr uint32_t pause = 5;
        const auto latest = std::chrono::steady_clock::now() + limit;
        while (!isMet()) {
            if (std::chrono::steady_clock::now() >= latest) {
                return isMet();
            }
            ny_sim_wait_calls(nullptr, ny_sim_call_count(nullptr) + 1, pause);
        }
        return true;
    }

    void RequestTask(const std::string& taskId, ny_sim_task_operation operation, const char* doing,
                     std::chrono::milliseconds limit) const {
        const std::string what = std::string(doing) + " the task " + taskId + ": ";
        detail::TaskRequest request(unanswered);
        const int32_t code = ny_sim_request_task(taskId.c_str(), operation, request.Out());
        if (code == NY_SIM_NOT_REGISTERED) {
            throw Failure(what + "its product is not registered for tasks; " + DescribeAll());
        }
        if (code != NY_OK) {
            throw Failure(what + "the agent has no such task: see SetTasks");
        }
        int32_t answer = NY_OK;
        if (!request.IsAnsweredWithin(limit, &answer)) {
            throw Failure(detail::WaitedUntil(
                              limit, std::string("the product has answered to ") + doing + " the task " + taskId) +
                          stillInside);
        }
        if (answer != NY_OK) {
            throw Failure(what + "the product answered " + std::to_string(answer));
        }
    }

    std::string DescribeAll() const {
        // No product has an empty id.
        return detail::DescribeOtherProducts({}) + "; " + agent;
    }

    UpdateAnswer RequestUpdate(const std::string& product, const std::string& call, const std::string& doing,
                               std::chrono::milliseconds limit) const {
        detail::UpdaterRequest request(unanswered);
        const int32_t code = ny_sim_request_update(call.c_str(), request.Out());
        if (code == NY_INVALID_ARGUMENT) {
            throw Failure(doing + ": a text is no UTF-8: " + call);
        }
        DemandRegistered(code, product, doing);
        int32_t answer = NY_OK;
        int32_t result = NY_SIM_UNWRITTEN;
        if (!request.IsAnsweredWithin(limit, &answer, &result)) {
            throw Failure(detail::WaitedUntil(limit, product + " has answered") + stillInside);
        }
        if (answer != NY_OK || result == NY_SIM_UNWRITTEN) {
            throw Failure(doing + ": it answered " + std::to_string(answer) +
                          (result == NY_SIM_UNWRITTEN ? " and no result" : ""));
        }
        const char* value = nullptr;
        size_t length = 0;
        const bool hasValue = ny_sim_updater_request_value(request.Get(), &value, &length) == NY_OK;
        return {result, hasValue ? std::string(value, length) : std::string()};
    }

    ny_setup_machine_t* machine = nullptr;
    std::string agent = noAgent;
    // The length of the call record at an upgrade under a client that had started.
    std::optional<size_t> restartedAfter;
    std::map<std::string, detail::TaskReports> started;
    mutable detail::UnansweredRequests unanswered;
};

}  // namespace vsmsgbus::testing
