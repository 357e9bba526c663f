// The meaning of the names and answers in the checking bridge's record.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace tool {

enum class Kind : unsigned char { Call, Callback, LogLine, AgentChange, Refusal, Finding, Note, Other };

// Its name in JSON.
const char* NameOf(Kind kind);

// Kind::Call for a name that is not known.
Kind KindOfSpan(std::string_view name);
Kind KindOfInstant(std::string_view name, const nlohmann::ordered_json& arguments);

// Why a call of that name with that answer counts as failed, as docs/STATUS_NUMBERS.md has it; empty when it does not.
// `answers` is the object of the event that ends the call, or null.
std::string FailureOfSpan(std::string_view name, const nlohmann::ordered_json& answers);
std::string FailureOfInstant(std::string_view name, const nlohmann::ordered_json& arguments);

// The message of a rule of the checking bridge, in whole sentences; empty for a name that is no rule's.
std::string MessageOfRule(const std::string& name);

}  // namespace tool
