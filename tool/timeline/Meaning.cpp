#include "tool/timeline/Meaning.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "checking/Rules.h"

namespace tool {

namespace {

using nlohmann::ordered_json;

constexpr std::array<std::string_view, 16> callbacks = {
    "CollectProperties", "GetLogLevel",  "EnforcePolicy",  "OnContainer",   "OnSettings", "OnSection",
    "OnSetting",         "VisitSetting", "ExecuteTask",    "StopTask",      "RemoveTask", "FreeCookie",
    "UpdateTaskStatus",  "UpdateNotify", "GetProductInfo", "SetProductInfo"};

// Answers in which 0 is the failure.
constexpr std::array<std::string_view, 5> falseIsFailure = {"VsMsgbusEntry", "VsMsgbusExit", "VsKitEnforceLocalPolicy",
                                                            "VsKitMsgbusGetInformation", "VsKitMsgbusManagedMode"};

// Answers in which all but 0 are codes of failures.
constexpr std::array<std::string_view, 5> othersAreFailures = {"VsKitMsgbusGetInfoByKeyName", "VsKitMsgbusEncryptData",
                                                               "VsKitMsgbusDecryptData", "VsKitMsgbusHashBuffer",
                                                               "ny_dl_open"};

constexpr std::array<std::string_view, 4> agentChanges = {"library opened", "library closed", "agent installed",
                                                          "agent removed"};

constexpr std::array<std::string_view, 4> taskCallbacks = {"ExecuteTask", "StopTask", "RemoveTask", "UpdateTaskStatus"};

template <size_t count>
bool IsAmong(std::string_view name, const std::array<std::string_view, count>& names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

int64_t NumberOf(const ordered_json& object, const char* member) {
    const auto found = object.find(member);
    return found != object.end() && found->is_number_integer() ? found->get<int64_t>() : 0;
}

std::string FailureOfTask(std::string_view name, int64_t answer) {
    if (answer == 3) {
        return "answers 3: failed";
    }
    // The agent is told of a failure for every number but these.
    return name == "UpdateTaskStatus" && answer != 2 && answer != 4 ? fmt::format("answers {}, no status", answer) : "";
}

std::string RuleName(const ordered_json& arguments) {
    const auto rule = arguments.find("rule");
    return rule != arguments.end() && rule->is_string() ? rule->get<std::string>() : "";
}

// The text with "…" where a finding gives something.
std::string WithoutDetails(std::string_view text) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '{' && i + 2 < text.size() && text[i + 2] == '}') {
            result += "\u2026";
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

}  // namespace

const char* NameOf(Kind kind) {
    constexpr std::array names = {"call",    "callback", "log line", "agent change",
                                  "refusal", "finding",  "note",     "other"};
    return names.at(static_cast<size_t>(kind));
}

Kind KindOfSpan(std::string_view name) {
    if (name == "Write") {
        return Kind::LogLine;
    }
    if (name.substr(0, 13) == "agent client ") {
        return Kind::AgentChange;
    }
    return IsAmong(name, callbacks) ? Kind::Callback : Kind::Call;
}

Kind KindOfInstant(std::string_view name, const ordered_json& arguments) {
    if (name == "finding") {
        const checking::RuleText* const rule = checking::FindRule(RuleName(arguments).c_str());
        return rule != nullptr && checking::IsNote(rule->rule) ? Kind::Note : Kind::Finding;
    }
    if (name == "the agent refuses") {
        return Kind::Refusal;
    }
    return IsAmong(name, agentChanges) ? Kind::AgentChange : Kind::Other;
}

std::string FailureOfSpan(std::string_view name, const ordered_json& answers) {
    const auto found = answers.find("answer");
    if (found == answers.end()) {
        return {};
    }
    if (found->is_boolean()) {
        return found->get<bool>() ? "" : "answers false";
    }
    if (!found->is_number_integer()) {
        return {};
    }
    const auto answer = found->get<int64_t>();
    if (IsAmong(name, taskCallbacks)) {
        return FailureOfTask(name, answer);
    }
    if (answer == 0 && IsAmong(name, falseIsFailure)) {
        return name.substr(0, 8) == "VsMsgbus" ? "answers false" : "answers 0";
    }
    return answer != 0 && IsAmong(name, othersAreFailures) ? fmt::format("answers {}", answer) : "";
}

std::string FailureOfInstant(std::string_view name, const ordered_json& arguments) {
    const int64_t code = NumberOf(arguments, "code");
    if (name == "the agent refuses") {
        return fmt::format("code {}", code);
    }
    return name == "library opened" && code != 0 ? fmt::format("error {}", code) : "";
}

std::string MessageOfRule(const std::string& name) {
    const checking::RuleText* const rule = checking::FindRule(name.c_str());
    return rule == nullptr ? ""
                           : WithoutDetails(fmt::format("{}: {}. {}", rule->what, rule->consequence, rule->remedy));
}

}  // namespace tool
