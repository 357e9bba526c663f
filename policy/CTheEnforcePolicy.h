#pragma once

#include "VsMsgbus/EnforcePolicy.h"
#include "VsMsgbus/LogSink.h"
#include "msgbus/registrations/RegistrationTable.h"
#include "policy/CPolicyBag.h"
#include "values/ModuleInterface.h"

namespace bridge {

// A module's registered enforcer.
class CTheEnforcePolicy {
public:
    CTheEnforcePolicy(VsKitMsgbus::INYEnforcePolicy* moduleEnforcer, VsKitMsgbus::ILogSink* moduleSink) noexcept
        : enforcer(moduleEnforcer), sink(moduleSink) {}

    // Has the module enforce its policies, which it reads through the agent's client. For one thread at a time.
    // `wasRemoved()` tells whether the module took the enforcer back meanwhile: it is then not called any more.
    template <class WasRemoved>
    void Enforce(ny_client_t* client, const wchar_t* productId, WasRemoved&& wasRemoved) {
        CPolicyBag bag(client, enforcer.Call(&VsKitMsgbus::INYEnforcePolicy::GetLogLevel), sink, productId);
        if (!wasRemoved()) {
            enforcer.Call(&VsKitMsgbus::INYEnforcePolicy::EnforcePolicy, productId, &bag);
        }
    }

private:
    const ModuleInterface<VsKitMsgbus::INYEnforcePolicy> enforcer;
    const ModuleInterface<VsKitMsgbus::ILogSink> sink;
};

// Two notifications of one product are enforced one after the other.
inline auto& EnforcerTable() {
    return TableOfProcess<RegistrationTable<CTheEnforcePolicy, CallGate::Admission::OneThreadAtATime>>();
}

}  // namespace bridge
