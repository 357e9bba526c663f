// The steps that expect something.
#include <windows.h>

#include <algorithm>

#include "tool/play/player/Services.h"
#include "tool/play/player/Steps.h"
#include "tool/text/Utf8.h"

namespace tool::play {

namespace {

using vsmsgbus::testing::Failure;
using vsmsgbus::testing::Service;
using Json = nlohmann::json;

std::string Joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : ", ") + text;
    }
    return all.empty() ? "nothing" : all;
}

void ExpectRegistered(Stage& stage, const Json& step) {
    const std::string product = stage.ProductOf(step);
    std::vector<std::string> wanted;
    std::vector<std::string> found;
    for (const std::string service : {"properties", "policies", "tasks", "updates"}) {
        const Json& services = step.at("services");
        if (std::find(services.begin(), services.end(), service) != services.end()) {
            wanted.push_back(service);
        }
        if (vsmsgbus::testing::IsRegistered(product, ServiceOf(service))) {
            found.push_back(service);
        }
    }
    if (found != wanted) {
        throw Failure(product + " was to be registered for " + Joined(wanted) + ", and is for " + Joined(found));
    }
}

void ExpectCalls(Stage& /*stage*/, const Json& step) {
    const std::string function = step.at("function");
    DemandNumber("the number of calls of " + function, step, "count", 0,
                 static_cast<int64_t>(ny_sim_call_count(function.c_str())));
}

void ExpectReports(Stage& /*stage*/, const Json& step) {
    const std::string task = step.at("task");
    Json statuses = Json::array();
    ny_sim_task_report_t report{};
    for (size_t i = 0; ny_sim_get_task_report(i, &report) == NY_OK; ++i) {
        if (task == report.taskId) {
            statuses.push_back(report.status);
        }
    }
    if (statuses != step.at("statuses")) {
        throw Failure("the reports of " + task + " were to be " + step.at("statuses").dump() + ", and are " +
                      statuses.dump());
    }
}

void ExpectSaid(Stage& stage, const Json& step) {
    const std::vector<std::string> lines = stage.LinesSaid();
    const Json& pattern = step.at("text");
    if (std::none_of(lines.begin(), lines.end(), [&](const std::string& line) { return Fits(pattern, line); })) {
        throw Failure("a line was to be " + Shown(pattern) + ", and none is; the last of " +
                      std::to_string(lines.size()) + " is \"" + (lines.empty() ? "" : lines.back()) + '"');
    }
}

// A library may be let go of by a thread that returns just now.
void ExpectNotLoaded(Stage& /*stage*/, const Json& step) {
    const std::string library = step.at("library");
    const auto latest = std::chrono::steady_clock::now() + LimitOf(step);
    while (::GetModuleHandleW(PathOf(library).c_str()) != nullptr) {
        if (std::chrono::steady_clock::now() >= latest) {
            throw Failure(library + " was not to be loaded, and is");
        }
        constexpr uint32_t pause = 20;
        ny_sim_wait_calls(nullptr, ny_sim_call_count(nullptr) + 1, pause);
    }
}

void ExpectRegistry(Stage& /*stage*/, const Json& step) {
    const std::string key = step.at("key");
    const std::string name = step.at("name");
    wchar_t text[1024] = {};
    DWORD size = sizeof text;
    const LSTATUS code = ::RegGetValueW(HKEY_LOCAL_MACHINE, PathOf(key).c_str(), PathOf(name).c_str(), RRF_RT_REG_SZ,
                                        nullptr, text, &size);
    if (code != ERROR_SUCCESS) {
        throw Failure(key + ": " + name + " was to be " + Shown(step.at("text")) + ", and cannot be read: error " +
                      std::to_string(code));
    }
    DemandText(key + ": " + name, step.at("text"), Utf8(text));
}

void ExpectNothingLeft(Stage& stage, const Json& step) {
    stage.Machine().ExpectNothingLeft(LimitOf(step));
}

void ExpectNoFindings(Stage& stage, const Json& /*step*/) {
    stage.Send({{"event", "no findings"}});
    if (const unsigned count = stage.CountFindings(nullptr); count != 0) {
        throw Failure("there were to be no findings, and there are " + std::to_string(count));
    }
}

void ExpectFinding(Stage& stage, const Json& step) {
    const std::string rule = step.at("rule");
    const auto latest = std::chrono::steady_clock::now() + LimitOf(step);
    while (stage.CountFindings(rule.c_str()) == 0) {
        if (std::chrono::steady_clock::now() >= latest) {
            throw Failure("there was to be a finding " + rule + ", and there is none; of other rules there are " +
                          std::to_string(stage.CountFindings(nullptr)));
        }
        constexpr uint32_t pause = 20;
        ny_sim_wait_calls(nullptr, ny_sim_call_count(nullptr) + 1, pause);
    }
}

}  // namespace

StepTable ExpectSteps() {
    return {{"expect registered", &ExpectRegistered},    {"expect calls", &ExpectCalls},
            {"expect reports", &ExpectReports},          {"expect said", &ExpectSaid},
            {"expect not loaded", &ExpectNotLoaded},     {"expect registry", &ExpectRegistry},
            {"expect nothing left", &ExpectNothingLeft}, {"expect no findings", &ExpectNoFindings},
            {"expect finding", &ExpectFinding}};
}

}  // namespace tool::play
