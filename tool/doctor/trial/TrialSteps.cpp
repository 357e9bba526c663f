#include "tool/doctor/trial/TrialSteps.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace tool::doctor {

namespace {

using nlohmann::json;

std::string Line(const json& object) {
    return object.dump(-1, ' ', false, json::error_handler_t::replace);
}

void ReadLine(const std::string& line, std::vector<TrialStep>& steps) {
    const json object = json::parse(line, nullptr, false);
    if (!object.is_object()) {
        return;
    }
    if (object.contains("begin")) {
        steps.push_back({object["begin"].get<std::string>(), std::nullopt, {}});
    } else if (!steps.empty() && object.contains("end")) {
        steps.back().code = object["end"].get<int64_t>();
    } else if (!steps.empty() && object.contains("text")) {
        steps.back().texts.push_back(object["text"].get<std::string>());
    }
}

void TellSilence(const std::string& lastLine) {
    std::vector<TrialStep> steps;
    ReadLine(lastLine, steps);
    if (!steps.empty()) {
        fmt::print(stderr, "vsmsgbus: waiting for {} ...\n", steps.back().name);
        std::fflush(stderr);
    }
}

}  // namespace

void TrialSteps::Begin(const std::string& name) const {
    writer.Write(Line({{"begin", name}}));
}

void TrialSteps::Say(const std::string& text) const {
    writer.Write(Line({{"text", text}}));
}

void TrialSteps::End(int64_t code) const {
    writer.Write(Line({{"end", code}}));
}

const TrialStep* TrialResult::Find(const std::string& name) const {
    const auto found =
        std::find_if(steps.begin(), steps.end(), [&](const TrialStep& step) { return step.name == name; });
    return found != steps.end() ? &*found : nullptr;
}

const TrialStep* TrialResult::Unfinished() const {
    return !steps.empty() && !steps.back().code ? &steps.back() : nullptr;
}

std::string TrialResult::HowItEnded() const {
    switch (end.code) {
        case EXCEPTION_ACCESS_VIOLATION: return "exception 0xC0000005 (access violation)";
        case EXCEPTION_STACK_OVERFLOW: return "exception 0xC00000FD (stack overflow)";
        case 0xC0000374: return "exception 0xC0000374 (heap corruption)";
        case 0xC0000409: return "exception 0xC0000409 (fail fast)";
        default:
            return end.code >= 0x80000000U ? fmt::format("exception 0x{:08X}", end.code)
                                           : fmt::format("exit status {}", end.code);
    }
}

TrialResult RunTrial(const std::vector<std::string>& arguments, std::chrono::milliseconds patience) {
    TrialResult result;
    result.end = RunReported(arguments, {patience, &TellSilence});
    for (const std::string& line : result.end.lines) {
        ReadLine(line, result.steps);
    }
    return result;
}

}  // namespace tool::doctor
