#include "tool/play/player/Stage.h"

#include <windows.h>

#include <regex>
#include <set>

#include "tool/text/Utf8.h"

namespace tool::play {

namespace {

using vsmsgbus::testing::Failure;
using Json = nlohmann::json;

bool IsAboutValues(std::string_view function) {
    return function.starts_with("ny_variant_") || function.starts_with("ny_buffer_") ||
           function.starts_with("ny_wbuffer_") || function.starts_with("ny_table_") ||
           function.starts_with("ny_array_");
}

std::string Times(size_t count) {
    return count == 1 ? "" : ", " + std::to_string(count) + " times";
}

}  // namespace

Stage::Stage(const Json& plan, void* bridgeHandle, Channel& linesOut)
    : channel(linesOut),
      bridge(bridgeHandle),
      product(plan.at("product")),
      load(plan.at("load")),
      unload(plan.at("unload")) {
    for (const Json& path : plan.at("modules")) {
        modules.emplace_back(PathOf(path.get<std::string>()));
    }
}

std::vector<ModuleFile*> Stage::ModulesOf(const Json& step) {
    std::vector<ModuleFile*> meant;
    std::string names;
    for (ModuleFile& module : modules) {
        if (!step.contains("module") || PathOf(step.at("module").get<std::string>()) == PathOf(module.Name())) {
            meant.push_back(&module);
        }
        names += (names.empty() ? "" : ", ") + module.Name();
    }
    if (meant.empty()) {
        throw Failure("there is no module " + step.at("module").get<std::string>() + "; there are " + names);
    }
    return meant;
}

std::string Stage::ProductOf(const Json& step) {
    if (step.contains("product")) {
        return step.at("product");
    }
    if (product.empty()) {
        const char* first = nullptr;
        const char* second = nullptr;
        if (ny_sim_get_product(0, &first) != NY_OK) {
            throw Failure("no product is registered, and neither the step nor the story names one");
        }
        if (ny_sim_get_product(1, &second) == NY_OK) {
            throw Failure(std::string("several products are registered, ") + first + " and " + second +
                          " among them, and neither the step nor the story names one");
        }
        product = first;
    }
    return product;
}

std::string Stage::FunctionFor(const std::string& verb) const {
    return verb == "load" ? load : unload;
}

unsigned Stage::CountFindings(const char* rule) const {
    using Count = unsigned (*)(const char*);
    const auto count = reinterpret_cast<Count>(
        reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(bridge), "VsMsgbusCheckFindings")));
    if (count == nullptr) {
        throw Failure("this is not the checking bridge");
    }
    return count(rule);
}

void Stage::TellCalls() {
    size_t valueCalls = 0;
    size_t same = 0;
    ny_sim_call_t last{};
    const auto tell = [&] {
        if (same != 0) {
            channel.Send(
                {{"event", "line"},
                 {"who", "bridge"},
                 {"text", std::string("calls ") + last.function + " on thread " + std::to_string(last.threadId) +
                              ": answer " + std::to_string(last.result) + Times(same)},
                 {"isCall", true}});
        }
        same = 0;
    };
    ny_sim_call_t call{};
    std::set<std::string> functions;
    for (; ny_sim_get_call(callsTold, &call) == NY_OK; ++callsTold) {
        functions.insert(call.function);
        if (IsAboutValues(call.function) && call.result == NY_OK) {
            ++valueCalls;
            continue;
        }
        if (same != 0 && (std::string_view(call.function) != last.function || call.threadId != last.threadId ||
                          call.result != last.result)) {
            tell();
        }
        last = call;
        ++same;
    }
    tell();
    channel.Send({{"event", "calls"}, {"functions", functions}});
    if (valueCalls != 0) {
        channel.Send({{"event", "line"},
                      {"who", "bridge"},
                      {"text", "makes, reads and releases values in " + std::to_string(valueCalls) + " further calls"},
                      {"isCall", true}});
    }
}

void Stage::ForgetCalls() {
    TellCalls();
    ForgetCallsSilently();
}

void Stage::ForgetCallsSilently() {
    ny_sim_clear_calls();
    callsTold = 0;
}

void Stage::Hear(const char* actor, const char* line) {
    const std::string text = line != nullptr ? line : "(null)";
    {
        const std::lock_guard guard(mutex);
        linesSaid.push_back(text);
    }
    const bool isLogLine = actor != nullptr && std::string_view(actor) == "bridge";
    channel.Send({{"event", "line"},
                  {"who", isLogLine ? "log" : "module"},
                  {"text", text + (isLogLine ? "" : " (thread " + std::to_string(::GetCurrentThreadId()) + ")")}});
}

std::vector<std::string> Stage::LinesSaid() const {
    const std::lock_guard guard(mutex);
    return linesSaid;
}

void Stage::SayTo(const char* actor, const char* line, void* stage) {
    static_cast<Stage*>(stage)->Hear(actor, line);
}

void Stage::Finish(const Json& step, std::unique_ptr<Request> request) {
    if (step.contains("as")) {
        const std::string name = step.at("as");
        Tell("player", "goes on; \"" + name + "\" is under way on thread " + std::to_string(request->Thread()));
        if (kept.count(name) != 0) {
            throw Failure("a request \"" + name + "\" is under way");
        }
        kept.emplace(name, Kept{step, std::move(request)});
        return;
    }
    FinishNow(step, std::move(request), LimitOf(step));
}

void Stage::Await(const std::string& name, std::chrono::milliseconds limit) {
    const auto found = kept.find(name);
    if (found == kept.end()) {
        throw Failure("no request \"" + name + "\" is under way");
    }
    Kept awaited = std::move(found->second);
    kept.erase(found);
    FinishNow(awaited.step, std::move(awaited.request), limit);
}

void Stage::FinishNow(const Json& step, std::unique_ptr<Request> request, std::chrono::milliseconds limit) {
    if (!request->IsAnsweredWithin(limit)) {
        const std::string thread = std::to_string(request->Thread());
        // Not destroyed: its destructor would wait for the answer.
        static_cast<void>(request.release());
        throw Hung("waited " + std::to_string(limit.count()) + " ms for the answer: thread " + thread +
                   " is still inside");
    }
    request->Look(*this, step);
}

std::chrono::milliseconds LimitOf(const Json& step) {
    return std::chrono::milliseconds(step.at("within").get<uint32_t>());
}

bool Fits(const Json& pattern, const std::string& text) {
    return pattern.is_string() ? pattern == text
                               : std::regex_match(text, std::regex(pattern.at("matches").get<std::string>()));
}

std::string Shown(const Json& pattern) {
    return pattern.is_string() ? '"' + pattern.get<std::string>() + '"'
                               : "like \"" + pattern.at("matches").get<std::string>() + '"';
}

void DemandText(const std::string& what, const Json& pattern, const std::string& text) {
    if (!Fits(pattern, text)) {
        throw Failure(what + " was to be " + Shown(pattern) + ", and is \"" + text + '"');
    }
}

void DemandNumber(const std::string& what, const Json& step, const char* member, int64_t otherwise, int64_t number) {
    const Json wanted = step.value(member, Json(otherwise));
    if (!wanted.is_null() && wanted != number) {
        throw Failure(what + " was to be " + wanted.dump() + ", and is " + std::to_string(number));
    }
}

void DemandAgentAnswer(Stage& stage, const Json& step, uint32_t thread, int32_t answer) {
    stage.Tell("bridge", "answers the agent " + std::to_string(answer) + " on thread " + std::to_string(thread));
    DemandNumber("the answer", step, "answer", NY_OK, answer);
}

}  // namespace tool::play
