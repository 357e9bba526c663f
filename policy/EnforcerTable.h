#pragma once

#include "msgbus/registrations/RegistrationTable.h"
#include "policy/CTheEnforcePolicy.h"

namespace bridge {

// Two notifications of one product are enforced one after the other.
using EnforcerRegistrations = RegistrationTable<CTheEnforcePolicy, CallGate::Admission::OneThreadAtATime>;

// The enforcers of all modules of the process, by product id.
inline EnforcerRegistrations& EnforcerTable() {
    return TableOfProcess<EnforcerRegistrations>();
}

}  // namespace bridge
