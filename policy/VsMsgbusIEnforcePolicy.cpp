#include "policy/VsMsgbusIEnforcePolicy.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "base/Boundary.h"
#include "base/ModuleCall.h"
#include "loglib/LogLib.h"
#include "policy/PolicyKey.h"

namespace bridge {

namespace {

constexpr int32_t failureSeverity = 3;
constexpr int32_t successSeverity = 8;

struct LogStatement {
    int32_t line;
    const wchar_t* text;
};

// A category whose policies' name goes to the registry, and the events logged of it, with their line's number. Products
// search for these texts: the blank at the end of a success and "EPSPolicyName" stay.
struct PolicyName {
    std::wstring_view category;
    const wchar_t* value;
    LogStatement onSuccess;
    LogStatement onFailure;
};

constexpr PolicyName registryNames[] = {
    {
        L"QTP_General_Policies",
        L"OASPolicyName",
        {__LINE__, L"Successfully set OASPolicyName "},
        {__LINE__, L"Failed to set OASPolicyName"},
    },
    {
        L"QTP_OnDemandScan_Policies",
        L"ODSPolicyName",
        {__LINE__, L"Successfully set ODSPolicyName "},
        {__LINE__, L"Failed to set ODSPolicyName"},
    },
    {
        L"QTP_BehaviorBlock_Policies",
        L"APPolicyName",
        {__LINE__, L"Successfully set APPolicyName "},
        {__LINE__, L"Failed to set APPolicyName"},
    },
    {
        L"QTP_BufferOverflow_Policies",
        L"EPPolicyName",
        {__LINE__, L"Successfully set EPPolicyName "},
        {__LINE__, L"Failed to set EPSPolicyName"},
    },
    {
        L"QTP_CommonScan_Policies",
        L"CommonScanPolicyName",
        {__LINE__, L"Successfully set CommonScanPolicyName "},
        {__LINE__, L"Failed to set CommonScanPolicyName"},
    },
};

// Has `write(event)` log an event. The host's log is called nowhere else; one of its own may throw, which is dropped.
template <class Write>
void LogToHost(int32_t line, int32_t severity, const Write& write) noexcept {
    Guarded([&] {
        CallModule([&] { write(LogUtils::LogEvent(__FILE__, line, severity, "NySpb", getLogManager(), 2, false)); });
    });
}

void Log(const LogStatement& statement, int32_t severity) noexcept {
    LogToHost(statement.line, severity, [&](const LogUtils::LogEvent& event) { event(L"NySpb", statement.text); });
}

}  // namespace

void StorePolicyName(const wchar_t* category, const wchar_t* name) noexcept {
    if (category == nullptr) {
        return;
    }
    const auto* const found = std::find_if(std::begin(registryNames), std::end(registryNames),
                                           [=](const PolicyName& row) { return row.category == category; });
    if (found == std::end(registryNames)) {
        return;
    }
    PolicyKey key;
    if (key.Open() != ERROR_SUCCESS) {
        return;
    }
    const bool isWritten = key.WriteText(found->value, name) == ERROR_SUCCESS;
    Log(isWritten ? found->onSuccess : found->onFailure, isWritten ? successSeverity : failureSeverity);
}

void LogDigestFailure(int32_t code) noexcept {
    LogToHost(__LINE__, successSeverity,
              [=](const LogUtils::LogEvent& event) { event(L"NySpb", "Error %d getting digest", code); });
}

}  // namespace bridge
