#include "checking/Findings.h"

#include <windows.h>

#include <atomic>
#include <map>
#include <tuple>

#include "base/Boundary.h"
#include "base/NoDestroyAtExit.h"
#include "checking/Channels.h"
#include "checking/Scope.h"
#include "checking/StateLock.h"

namespace checking {

namespace {

using FindingKey = std::tuple<Rule, std::string, std::string>;  // with product and place

std::atomic<bool> hasForgotten = false;

struct FindingTable {
    StateLock lock;
    std::map<FindingKey, unsigned> findings;
};

FindingTable& Findings() {
    static bridge::NoDestroyAtExit<FindingTable> table;
    return *table;
}

// Whether it is the first of its kind. Not counted yet.
bool IsNew(const FindingKey& finding) {
    FindingTable& table = Findings();
    const Guard guard(table.lock);
    return table.findings.try_emplace(finding, 0).second;
}

void Count(const FindingKey& finding) {
    FindingTable& table = Findings();
    const Guard guard(table.lock);
    ++table.findings[finding];
}

}  // namespace

std::string Message(const RuleText& rule, std::string_view productId, std::initializer_list<std::string_view> details,
                    std::string_view place) {
    std::string message = IsNote(rule.rule) ? "VsMsgbus note [" : "VsMsgbus check [";
    message.append(rule.name)
        .append("] ")
        .append(productId.empty() ? "(no product)" : productId)
        .append(": ")
        .append(WithDetails(rule.what, details));
    message.append(": ")
        .append(WithDetails(rule.consequence, details))
        .append(". ")
        .append(WithDetails(rule.remedy, details));
    return message.append(" (").append(place).append(")");
}

bool ForgetSome() noexcept {
    hasForgotten = true;
    return false;
}

bool HasForgotten() noexcept {
    return hasForgotten;
}

void Report(Rule rule, std::string_view productId, std::initializer_list<std::string_view> details) noexcept {
    if (HasForgotten() && RestsOnNotes(rule)) {
        return;
    }
    const DWORD lastError = ::GetLastError();
    bridge::Guarded([&] {
        const Scope* const scope = Scope::Innermost();
        const std::string place = scope != nullptr ? scope->Function() : "";
        const FindingKey finding(rule, productId, place);
        if (IsNew(finding)) {
            Trace(TracePhase::Instant, "finding", [&](TraceArguments& arguments) {
                arguments.Add("rule", TextOf(rule).name).Add("product", productId);
            });
            const std::string thread = "thread " + std::to_string(::GetCurrentThreadId());
            Tell(Message(TextOf(rule), productId, details, place.empty() ? thread : thread + ", in " + place),
                 !IsNote(rule));
        }
        // Last: a finding that is counted can be read in the file.
        Count(finding);
    });
    ::SetLastError(lastError);
}

unsigned CountFindings(const char* ruleName) noexcept {
    const RuleText* const wanted = ruleName != nullptr ? FindRule(ruleName) : nullptr;
    unsigned count = 0;
    FindingTable& table = Findings();
    const Guard guard(table.lock);
    for (const auto& [key, times] : table.findings) {
        const Rule rule = std::get<Rule>(key);
        if (ruleName == nullptr ? !IsNote(rule) : wanted != nullptr && wanted->rule == rule) {
            count += times;
        }
    }
    return count;
}

}  // namespace checking
