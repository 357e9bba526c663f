// The exports of policy enforcement.
#include <string_view>

#include "VsMsgbus/EnforcePolicy.h"
#include "base/Boundary.h"
#include "dispatcher/groups/PolicyGroup.h"
#include "msgbus/client/AgentUse.h"
#include "policy/CTheEnforcePolicy.h"
#include "values/AgentTexts.h"

using namespace bridge;

namespace {

constexpr size_t longestId = 0xFFFF;

// Reads no further than one character behind the longest id.
size_t BoundedLength(const wchar_t* text) noexcept {
    size_t length = 0;
    while (length <= longestId && text[length] != L'\0') {
        ++length;
    }
    return length;
}

}  // namespace

bool VsKitMsgbusSetEnforcePolicy(const wchar_t* productId, VsKitMsgbus::INYEnforcePolicy* enforcer,
                                 void* sink) noexcept {
    return EnforcerTable().Set(productId, enforcer, static_cast<VsKitMsgbus::ILogSink*>(sink));
}

bool VsKitMsgbusRemoveEnforcerPolicy(const wchar_t* productId) noexcept {
    return EnforcerTable().Remove(productId);
}

int VsKitEnforceLocalPolicy(const wchar_t* productId) noexcept {
    return Guarded(0, [&] {
        const std::wstring_view wideId(productId != nullptr ? productId : L"",
                                       productId != nullptr ? BoundedLength(productId) : 0);
        const AgentUse use;
        if (!use || wideId.size() > longestId) {
            return 0;
        }
        const std::string narrowId = NarrowFromWide(wideId, use.Libraries());
        return agent::ny_policy_enforce.In(use.Libraries())(use.Client(), narrowId.c_str()) == NY_OK ? 1 : 0;
    });
}
