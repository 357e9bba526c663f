#include <windows.h>

#include <exception>
#include <optional>
#include <string>

#include "abi/module/Module.h"
#include "abi/module/Told.h"
#include "vsmsgbus.hpp"

namespace {

std::optional<vsmsgbus::Product> product;

std::wstring Text(std::wstring_view text) {
    return std::wstring(text);
}

// Needs of the standard library what every build has: no std::exception that carries a text.
class Refusal : public std::exception {
public:
    const char* what() const noexcept override { return "refused"; }
};

void TellProperties(vsmsgbus::Properties& properties) {
    properties.Set("General", L"Version", "1.0");
    properties.Set("General", "Number", 12);
    properties.Set("General", "Flag", true);
}

void ReadPolicies(vsmsgbus::Policies& policies) {
    policies.Walk([](const vsmsgbus::Setting& setting) {
        Told() << L"Walk " << setting.section.Terminated() << L" " << setting.name.Terminated();
    });
    for (const vsmsgbus::Setting& setting : policies.Settings()) {
        Told() << L"Settings " << setting.policy.Terminated() << L" " << setting.value.Terminated();
    }
    for (const auto& [name, value] : policies.Section("S")) {
        Told() << L"Section " << name.c_str() << L" " << value.c_str();
    }
    Told() << L"Digests " << vsmsgbus::Wide(policies.Digests()).c_str();
}

// Ends when the agent stops the task, on a thread of its own; one without steps ends at once.
vsmsgbus::TaskOutcome RunTask(vsmsgbus::Task& task) {
    const int steps = task.Get<int>("S", "Steps").ValueOr(0);
    Told() << L"task " << task.Id().c_str() << L" " << steps;
    if (steps == 0) {
        return vsmsgbus::TaskResult::Done;
    }
    return vsmsgbus::OnOwnThread([](const vsmsgbus::TaskRun& run) {
        run.Progress();
        while (!run.IsToStop()) {
            ::SwitchToThread();
        }
        return vsmsgbus::TaskResult::Failed;
    });
}

std::optional<std::wstring> ValueOf(std::wstring_view name) {
    return name == L"a key" ? std::optional<std::wstring>(L"its value") : std::nullopt;
}

bool SetNothing(std::wstring_view /*name*/, std::wstring_view /*value*/) {
    throw Refusal();
}

void Log(int level, std::wstring_view line) {
    Told() << L"log " << level << L": " << Text(line).c_str();
}

}  // namespace

bool ModuleLoadLayer(const char* productId) {
    try {
        product.emplace(productId, vsmsgbus::Handlers{.properties = TellProperties,
                                                      .policies = ReadPolicies,
                                                      .tasks = RunTask,
                                                      .updates = {.get = ValueOf, .set = SetNothing},
                                                      .log = Log});
        return true;
    } catch (const vsmsgbus::Error& error) {
        Told() << vsmsgbus::Wide(error.what()).c_str();
        return false;
    }
}

bool ModuleUnloadLayer() {
    return product->Leave();
}
