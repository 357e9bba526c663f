#include "NewModule.h"

#include <cstdio>
#include <exception>
#include <optional>

#include <vsmsgbus.hpp>

#include "Settings.h"

namespace {

constexpr wchar_t version[] = L"1.0";

std::optional<vsmsgbus::Product> product;
Settings settings;

// The agent calls what follows on threads of its own.

// It asks for the product's properties.
void Tell(vsmsgbus::Properties& properties) {
    properties.Set("General", "Version", version);
    properties.Set("General", "Level", settings.Get(L"Level"));
}

// The product's policies may have changed.
void TakePolicies(vsmsgbus::Policies& policies) {
    settings.Replace(policies.Section("General"));
}

// It has a task to execute. The work goes on on a thread of its own, until it is done or the agent stops it.
vsmsgbus::TaskOutcome RunTask(vsmsgbus::Task& task) {
    const int steps = task.Get<int>("General", "Steps").ValueOr(1);
    return vsmsgbus::OnOwnThread([steps](const vsmsgbus::TaskRun& run) {
        for (int i = 0; i < steps; ++i) {
            if (run.IsToStop()) {
                return vsmsgbus::TaskResult::Failed;
            }
            run.Progress();
        }
        return vsmsgbus::TaskResult::Done;
    });
}

// It tells of an update. The answer is the agent's to understand.
int32_t HearOfUpdate(vsmsgbus::UpdateNotice& /*notice*/) {
    return 0;
}

// It asks about the product.
std::optional<std::wstring> Answer(std::wstring_view name) {
    return name == L"Version" ? std::optional<std::wstring>(version) : std::nullopt;
}

// Takes the lines of the bridge and of the agent; called on any thread.
void Log(int level, std::wstring_view line) {
    std::fprintf(stderr, "%d: %s\n", level, vsmsgbus::Utf8(line).c_str());
}

}  // namespace

bool NewModuleLoad() {
    try {
        settings.Replace({});
        product.emplace(productId, vsmsgbus::Handlers{.properties = Tell,
                                                      .policies = TakePolicies,
                                                      .tasks = RunTask,
                                                      .updates = {.notify = HearOfUpdate, .get = Answer},
                                                      .log = Log});
        return true;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return false;
    }
}

bool NewModuleUnload() {
    return !product || product->Leave();
}
