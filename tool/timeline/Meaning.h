// What the names and answers in the checking bridge's record mean.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace tool {

enum class Kind : unsigned char { Call, Callback, LogLine, AgentChange, Refusal, Finding, Note, Other };

// As it is called in what is written for machines.
const char* NameOf(Kind kind);

// A name that is not known is a call's.
Kind KindOfSpan(std::string_view name);
Kind KindOfInstant(std::string_view name, const nlohmann::ordered_json& arguments);

// Why a call of that name with that answer counts as failed, as docs/STATUS_NUMBERS.md has it; empty when it does not.
// `answers` is what stands at the call's end: an object, or null.
std::string FailureOfSpan(std::string_view name, const nlohmann::ordered_json& answers);
std::string FailureOfInstant(std::string_view name, const nlohmann::ordered_json& arguments);

// What a rule of the checking bridge says, in whole sentences; empty for a name that is no rule's.
std::string MessageOfRule(const std::string& name);

}  // namespace tool
