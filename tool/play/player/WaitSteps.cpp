// The story waits for what the bridge, the agent or the module does.
#include <windows.h>

#include <thread>

#include "tool/play/player/Services.h"
#include "tool/play/player/Steps.h"

namespace tool::play {

using vsmsgbus::testing::Failure;
using vsmsgbus::testing::Service;
using Json = nlohmann::json;

Service ServiceOf(const std::string& name) {
    using enum Service;
    return name == "properties" ? Properties : name == "policies" ? Policies : name == "tasks" ? Tasks : Updates;
}

namespace {

// Waits for a product. When neither the step nor the story names one, it is the one that registers; with `isAny`, the
// first of several.
std::string AwaitedProduct(Stage& stage, const Json& step, bool isAny = false) {
    const auto latest = std::chrono::steady_clock::now() + LimitOf(step);
    for (;;) {
        const char* product = nullptr;
        if (isAny && ny_sim_get_product(0, &product) == NY_OK) {
            return product;
        }
        try {
            return stage.ProductOf(isAny ? Json::object() : step);
        } catch (const Failure&) {
            if (std::chrono::steady_clock::now() >= latest) {
                throw;
            }
        }
        ny_setup_touch_agent_key(stage.Machine().Setup());
        constexpr uint32_t pause = 50;
        ny_sim_wait_calls(nullptr, ny_sim_call_count(nullptr) + 1, pause);
    }
}

void WaitUntilRegistered(Stage& stage, const Json& step) {
    const std::string product = AwaitedProduct(stage, step);
    stage.Machine().WaitUntilRegistered(product, ServiceOf(step.at("service")), LimitOf(step));
    stage.Tell("bridge", "has registered " + product + " for " + step.at("service").get<std::string>());
}

void WaitUntilUnregistered(Stage& stage, const Json& step) {
    const std::string product = stage.ProductOf(step);
    stage.Machine().WaitUntilUnregistered(product, ServiceOf(step.at("service")), LimitOf(step));
    stage.Tell("bridge", product + " is no longer registered for " + step.at("service").get<std::string>());
}

void WaitUntilCalled(Stage& stage, const Json& step) {
    const std::string function = step.at("function");
    const uint32_t count = step.value("count", 1U);
    const auto latest = std::chrono::steady_clock::now() + LimitOf(step);
    constexpr uint32_t patience = 100;
    while (ny_sim_wait_calls(function.c_str(), count, patience) != NY_OK) {
        if (std::chrono::steady_clock::now() >= latest) {
            throw Failure("waited until " + function + " was called " + std::to_string(count) +
                          " times: it was called " + std::to_string(ny_sim_call_count(function.c_str())) + " times");
        }
        ny_setup_touch_agent_key(stage.Machine().Setup());
    }
}

void WaitUntilBlocked(Stage& stage, const Json& step) {
    const std::string function = step.at("function");
    if (!stage.AllHolds().Of(function).WaitUntilSomebodyWaits(LimitOf(step))) {
        throw Failure("waited until a thread is in " + function + ": none is");
    }
    stage.Tell("bridge", "is in " + function + ", and waits there");
}

void WaitUntilReported(Stage& stage, const Json& step) {
    const std::string task = step.at("task");
    const Json wanted = step.value("status", Json());
    const auto latest = std::chrono::steady_clock::now() + LimitOf(step);
    std::string statuses;
    for (size_t next = 0;;) {
        ny_sim_task_report_t report{};
        for (; ny_sim_get_task_report(next, &report) == NY_OK; ++next) {
            if (task != report.taskId) {
                continue;
            }
            statuses += (statuses.empty() ? "" : ", ") + std::to_string(report.status);
            if (wanted.is_null() || wanted == report.status) {
                stage.Tell("agent", "was told how " + task + " stands: " + statuses);
                return;
            }
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(latest - std::chrono::steady_clock::now());
        if (left.count() <= 0 || ny_sim_wait_task_reports(next + 1, static_cast<uint32_t>(left.count())) != NY_OK) {
            throw Failure("waited until " + (wanted.is_null() ? "something" : wanted.dump()) + " is reported of " +
                          task + ": " + (statuses.empty() ? "nothing was" : "it was reported " + statuses));
        }
    }
}

// Tells the products that are registered once the bridge has made no call for 200 ms, because a module may enter on a
// thread of its own.
void TellProducts(Stage& stage, const Json& step) {
    AwaitedProduct(stage, step, true);
    constexpr uint32_t quiet = 200;
    while (ny_sim_wait_calls(nullptr, ny_sim_call_count(nullptr) + 1, quiet) == NY_OK) {
    }
    const char* product = nullptr;
    for (size_t i = 0; ny_sim_get_product(i, &product) == NY_OK; ++i) {
        Json services = Json::array();
        for (const char* const name : {"properties", "policies", "tasks", "updates"}) {
            if (vsmsgbus::testing::IsRegistered(product, ServiceOf(name))) {
                services.push_back(name);
            }
        }
        stage.Tell("bridge", "has registered " + std::string(product) + " for " + services.dump());
        stage.Send({{"event", "fact"}, {"product", product}, {"services", services}});
    }
}

void Pause(Stage& /*stage*/, const Json& step) {
    std::this_thread::sleep_for(std::chrono::milliseconds(step.at("milliseconds").get<uint32_t>()));
}

void ForgetCalls(Stage& stage, const Json& /*step*/) {
    stage.ForgetCalls();
}

}  // namespace

StepTable WaitSteps() {
    return {{"wait until registered", &WaitUntilRegistered},
            {"wait until unregistered", &WaitUntilUnregistered},
            {"wait until called", &WaitUntilCalled},
            {"wait until blocked", &WaitUntilBlocked},
            {"wait until reported", &WaitUntilReported},
            {"tell products", &TellProducts},
            {"pause", &Pause},
            {"forget calls", &ForgetCalls}};
}

}  // namespace tool::play
